#include "recording_kernel.h"

#include <algorithm>
#include <array>
#include <memory>

#include "platform/CQNLOptKer.h"

struct MeshKernelState {
    struct Box {
        int id;
        std::array<double, 3> low;
        std::array<double, 3> high;
    };
    std::vector<Box> boxes;
    std::vector<int> found;
};

std::vector<std::pair<const double*, int>>& SmoothingCalls() {
    static std::vector<std::pair<const double*, int>> calls;
    return calls;
}

CQNLOptKer::CQNLOptKer() : m_pState(std::make_unique<MeshKernelState>().release()) {}

CQNLOptKer::~CQNLOptKer() {
    std::unique_ptr<MeshKernelState>{m_pState};
}

int CQNLOptKer::argumentHandle(int, char**, char*, char*, char*, char*, char*, char*) {
    return 0;
}
void CQNLOptKer::getMsgPtr(CQNLKNLogErrMsgTool*) {}
int CQNLOptKer::ReadMeshData(char*, int) {
    return -1;
}
void CQNLOptKer::InitialzeSearch(int) {}

int* CQNLOptKer::FindPassElemByAnyRay(int& count, double, double, double, double, double, double, int) {
    count = 0;
    return nullptr;
}

void CQNLOptKer::shellSorting(int, double*, int*) const {}

int CQNLOptKer::ComputeNodeSurfaceNormal(double* nx, double*, double*) {
    nx[1] = 1.0;
    return 1;
}

void CQNLOptKer::SmoothSurfaceNodeValue(double* array, int iterations) {
    SmoothingCalls().emplace_back(array, iterations);
}

void CQNLOptKer::SetADTreeRange(double, double, double, double, double, double, int, int, int) {}

void CQNLOptKer::AddSurfaceToADTree(int id, double xMin, double yMin, double zMin, double xMax, double yMax,
                                    double zMax) {
    m_pState->boxes.push_back({id, {xMin, yMin, zMin}, {xMax, yMax, zMax}});
}

int* CQNLOptKer::SearchNearBlockID(double xMin, double yMin, double zMin, double xMax, double yMax,
                                   double zMax, int& count, int) {
    m_pState->found.clear();
    for (const MeshKernelState::Box& box : m_pState->boxes) {
        if (box.low[0] <= xMax && box.high[0] >= xMin && box.low[1] <= yMax && box.high[1] >= yMin &&
            box.low[2] <= zMax && box.high[2] >= zMin) {
            m_pState->found.push_back(box.id);
        }
    }
    std::sort(m_pState->found.begin(), m_pState->found.end());
    count = static_cast<int>(m_pState->found.size());
    return m_pState->found.data();
}
