// Mesh kernel of the stub platform: one tetra, whose passed elements are all its faces and itself.

#include <array>

#include "platform/CQNLOptKer.h"
#include "platform/CThickGen.h"
#include "platform/FieldKernel.h"

struct qnl::kernel::MeshKernelState {
    std::array<NodeRecord, 5> nodes{};
    std::array<SurfaceRecord, 5> faces{};
    std::array<CellRecord, 2> cells{};
    std::array<std::array<int, 4>, 5> faceNodes{{{}, {0, 1, 3, 2}, {0, 1, 2, 4}, {0, 2, 3, 4}, {0, 1, 4, 3}}};
    std::array<int, 5> cellNodes{0, 1, 2, 3, 4};
    std::array<int, 5> ones{0, 1, 1, 1, 1};
    std::array<int, 5> identity{0, 1, 2, 3, 4};
    std::array<int, 2> notRunner{0, 0};
    std::array<int, 5> passed{1, 2, 3, 4, 5};
};

namespace {

qnl::kernel::MeshKernelState& State() {
    static qnl::kernel::MeshKernelState state;
    return state;
}

void SetBox(EntityRecord& record, double low, double high) {
    for (int axis = 0; axis < 3; ++axis) {
        record.boxMin[axis] = low;
        record.boxMax[axis] = high;
    }
    record.zMiddle = (low + high) / 2;
}

}  // namespace

CQNLOptKer::CQNLOptKer()
    : m_pState(&State()), m_dBox{1, 1, 1, 0, 0, 0}, m_dMeshSize(1), m_dGeomTolerance(1) {}

CQNLOptKer::~CQNLOptKer() = default;

int CQNLOptKer::argumentHandle(int argc, char** argv, char* word0, char* word1, char* word2, char* word3,
                               char* word4, char* word5) {
    const std::array<char*, 6> words{word0, word1, word2, word3, word4, word5};
    for (int i = 0; i < 6; ++i) {
        char* target = words[static_cast<std::size_t>(i)];
        const char* source = i < argc ? argv[i] : "";
        while ((*target++ = *source++) != '\0') {
        }
    }
    return argc;
}

void CQNLOptKer::getMsgPtr(CQNLKNLogErrMsgTool* logTool) {
    m_pLogTool = logTool;
}

int CQNLOptKer::ReadMeshData(char*, int) {
    qnl::kernel::MeshKernelState& state = *m_pState;
    for (int i = 1; i <= 4; ++i) {
        state.nodes[static_cast<std::size_t>(i)] = {i == 2 ? 1.0 : 0.0, i == 3 ? 1.0 : 0.0,
                                                    i == 4 ? 1.0 : 0.0, i, 0};
        EntityRecord& face = state.faces[static_cast<std::size_t>(i)];
        face.nNode = 3;
        face.nodes = state.faceNodes[static_cast<std::size_t>(i)].data();
        SetBox(face, 0.1 * i, 0.2 * i);
    }
    state.cells[1].nNode = 4;
    state.cells[1].nodes = state.cellNodes.data();
    SetBox(state.cells[1], 0, 1);
    p_Node = state.nodes.data();
    p_Surfce = state.faces.data();
    p_Cell = state.cells.data();
    m_nNodes = 4;
    m_nSurfaces = 4;
    m_nCells = 1;
    m_pIsPartNodeTemp = state.ones.data();
    m_pNotRunnerNode = state.ones.data();
    m_pNodeGlobalIdToLocal = state.identity.data();
    m_pIsRunnerCell = state.notRunner.data();
    return 1;
}

void CQNLOptKer::InitialzeSearch(int) {}

int* CQNLOptKer::FindPassElemByAnyRay(int& count, double, double, double, double, double, double, int) {
    count = 5;
    return m_pState->passed.data();
}

void CQNLOptKer::shellSorting(int n, double* keys, int* ids) const {
    for (int i = 2; i <= n; ++i) {
        for (int j = i; j > 1 && keys[j - 1] > keys[j]; --j) {
            std::swap(keys[j - 1], keys[j]);
            std::swap(ids[j - 1], ids[j]);
        }
    }
}

int CQNLOptKer::ComputeNodeSurfaceNormal(double*, double*, double* nz) {
    for (int v = 1; v <= 4; ++v) {
        nz[v] = -1.0;
    }
    return 1;
}

void CQNLOptKer::SmoothSurfaceNodeValue(double*, int) {}
void CQNLOptKer::SetADTreeRange(double, double, double, double, double, double, int, int, int) {}
void CQNLOptKer::AddSurfaceToADTree(int, double, double, double, double, double, double) {}

int* CQNLOptKer::SearchNearBlockID(double, double, double, double, double, double, int& count, int) {
    count = 0;
    return m_pState->passed.data();
}

CThickGen::CThickGen(const char*, const char*) : m_nStatus(1) {}

std::unique_ptr<qnl::FieldKernel> qnl::MakeFieldKernel(CQNLOptKer&) {
    return nullptr;
}
