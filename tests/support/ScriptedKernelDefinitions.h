#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "support/CallText.h"
#include "support/ScriptedKernel.h"

CQNLOptKer::CQNLOptKer() : m_pState(std::make_unique<qnl::kernel::MeshKernelState>().release()) {
    ++fake::TheKernel().kernelsAlive;
}

CQNLOptKer::~CQNLOptKer() {
    const std::unique_ptr<qnl::kernel::MeshKernelState> owner(m_pState);
    --fake::TheKernel().kernelsAlive;
}

int CQNLOptKer::argumentHandle(int, char**, char*, char*, char*, char*, char*, char*) {
    return 0;
}

void CQNLOptKer::getMsgPtr(CQNLKNLogErrMsgTool*) {}

int CQNLOptKer::ReadMeshData(char* path, int flag) {
    fake::TheKernel().calls.push_back(CallText("ReadMeshData", path, flag));
    return fake::TheKernel().readStatus;
}

void CQNLOptKer::InitialzeSearch(int nThread) {
    fake::TheKernel().calls.push_back(CallText("InitialzeSearch", nThread));
    m_pState->slots.resize(static_cast<std::size_t>(nThread));
    for (auto& slot : m_pState->slots) {
        slot.reserve(4096);
    }
}

int* CQNLOptKer::FindPassElemByAnyRay(int& count, double x, double /*y*/, double /*z*/, double dx, double dy,
                                      double dz, int thread) {
    const int ray = static_cast<int>(std::lround(x));
    if (m_pState->beforeRay) {
        m_pState->beforeRay(ray);
    }
    ++m_pState->rayCalls;
    if (thread == 0) {
        m_pState->lastDirection = {dx, dy, dz};
    }
    const auto found = m_pState->rays.find(ray);
    auto& slot = m_pState->slots.at(static_cast<std::size_t>(thread));
    slot.clear();
    if (found != m_pState->rays.end()) {
        slot.insert(slot.end(), found->second.begin(), found->second.end());
    }
    count = static_cast<int>(slot.size());
    return slot.data();
}

void CQNLOptKer::shellSorting(int n, double* keys, int* ids) const {
    for (int i = 2; i <= n; ++i) {
        for (int k = i; k > 1 && keys[k] < keys[k - 1]; --k) {
            std::swap(keys[k], keys[k - 1]);
            std::swap(ids[k], ids[k - 1]);
        }
    }
}

int CQNLOptKer::ComputeNodeSurfaceNormal(double* nx, double*, double*) {
    nx[1] = 1.0;
    return 1;
}

void CQNLOptKer::SmoothSurfaceNodeValue(double* array, int iterations) {
    fake::TheKernel().smoothings.emplace_back(array, iterations);
    if (fake::TheKernel().smoothingEffect) {
        fake::TheKernel().smoothingEffect(array);
    }
}

void CQNLOptKer::SetADTreeRange(double xMax, double yMax, double zMax, double xMin, double yMin, double zMin,
                                int kind, int blockSize, int blockCount) {
    fake::TheKernel().calls.push_back(
        CallText("SetADTreeRange", xMax, yMax, zMax, xMin, yMin, zMin, kind, blockSize, blockCount));
}

void CQNLOptKer::AddSurfaceToADTree(int id, double xMin, double yMin, double zMin, double xMax, double yMax,
                                    double zMax) {
    m_pState->boxes.Add(id, {{xMin, yMin, zMin}, {xMax, yMax, zMax}});
}

int* CQNLOptKer::SearchNearBlockID(double xMin, double yMin, double zMin, double xMax, double yMax,
                                   double zMax, int& count, int slot) {
    m_pState->lastBox = {xMin, yMin, zMin, xMax, yMax, zMax};
    auto& answer = m_pState->slots.at(static_cast<std::size_t>(slot));
    if (!m_pState->near) {
        m_pState->boxes.Find({{xMin, yMin, zMin}, {xMax, yMax, zMax}}, answer);
    } else {
        answer = m_pState->near((xMin + xMax) / 2.0, (yMin + yMax) / 2.0, (zMin + zMax) / 2.0);
    }
    count = static_cast<int>(answer.size());
    return answer.data();
}
