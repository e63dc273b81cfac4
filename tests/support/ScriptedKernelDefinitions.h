#pragma once

#include <algorithm>
#include <cmath>

#include "support/ScriptedKernel.h"

CQNLOptKer::CQNLOptKer() : m_pState(new qnl::kernel::MeshKernelState) {}

CQNLOptKer::~CQNLOptKer() {
    delete m_pState;
}

void CQNLOptKer::InitialzeSearch(int nThread) {
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

int* CQNLOptKer::SearchNearBlockID(double xMin, double yMin, double zMin, double xMax, double yMax,
                                   double zMax, int& count, int slot) {
    m_pState->lastBox = {xMin, yMin, zMin, xMax, yMax, zMax};
    auto& answer = m_pState->slots.at(static_cast<std::size_t>(slot));
    answer = m_pState->near((xMin + xMax) / 2.0, (yMin + yMax) / 2.0, (zMin + zMax) / 2.0);
    count = static_cast<int>(answer.size());
    return answer.data();
}
