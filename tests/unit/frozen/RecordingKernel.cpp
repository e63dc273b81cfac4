#include "RecordingKernel.h"

#include <memory>

#include "kernel/boxes/BoxTree.h"
#include "platform/CQNLOptKer.h"

struct qnl::kernel::MeshKernelState {
    qnl::kernel::BoxTree tree;
    std::vector<int> found;
};

std::vector<std::pair<const double*, int>>& SmoothingCalls() {
    static std::vector<std::pair<const double*, int>> calls;
    return calls;
}

std::function<void(double*)>& SmoothingEffect() {
    static std::function<void(double*)> effect;
    return effect;
}

CQNLOptKer::CQNLOptKer() : m_pState(std::make_unique<qnl::kernel::MeshKernelState>().release()) {}

CQNLOptKer::~CQNLOptKer() {
    std::unique_ptr<qnl::kernel::MeshKernelState>{m_pState};
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
    if (SmoothingEffect()) {
        SmoothingEffect()(array);
    }
}

void CQNLOptKer::SetADTreeRange(double, double, double, double, double, double, int, int, int) {}

void CQNLOptKer::AddSurfaceToADTree(int id, double xMin, double yMin, double zMin, double xMax, double yMax,
                                    double zMax) {
    m_pState->tree.Add(id, {{xMin, yMin, zMin}, {xMax, yMax, zMax}});
}

int* CQNLOptKer::SearchNearBlockID(double xMin, double yMin, double zMin, double xMax, double yMax,
                                   double zMax, int& count, int) {
    m_pState->tree.Find({{xMin, yMin, zMin}, {xMax, yMax, zMax}}, m_pState->found);
    count = static_cast<int>(m_pState->found.size());
    return m_pState->found.data();
}
