#include "platform/CQNLOptKer.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "kernel/MeshKernelState.h"
#include "kernel/mesh/MeshFault.h"
#include "kernel/mesh/MeshFile.h"
#include "kernel/mesh/NodeNormals.h"
#include "kernel/rays/DepthSort.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Faults.h"

namespace qnl::kernel {

namespace {

constexpr std::size_t kWordBuffer = 255;
constexpr int kWords = 6;
constexpr int kUnreadable = -1;

void PrintLine(const std::string& text) {
    CQNLKNLogErrMsgTool::printLogStringContent(text, "", std::cout);
}

int ReportUnreadable(const char* path, const std::string& line) {
    PrintLine(line);
    RecordFault({path, "mesh", "a mesh that can be read", line, "correct the mesh file, or name another"});
    return kUnreadable;
}

void ReportCounts(const KernelMesh& mesh) {
    if (mesh.turnedCells > 0) {
        PrintLine("Cells of negative volume that were turned: " + std::to_string(mesh.turnedCells));
    }
    if (mesh.lonelyNodes > 0) {
        PrintLine("Nodes in no cell: " + std::to_string(mesh.lonelyNodes));
    }
}

void Publish(KernelMesh& mesh, CQNLOptKer& kernel) {
    kernel.p_Node = mesh.nodes.data();
    kernel.p_Surfce = mesh.faces.records.data();
    kernel.p_Cell = mesh.cells.records.data();
    kernel.m_nNodes = static_cast<int>(mesh.nodes.size()) - 1;
    kernel.m_nSurfaces = static_cast<int>(mesh.faces.records.size()) - 1;
    kernel.m_nCells = static_cast<int>(mesh.cells.records.size()) - 1;
    kernel.m_pIsPartNodeTemp = mesh.byLabel.isPart.Data();
    kernel.m_pNotRunnerNode = mesh.byLabel.nodeClass.Data();
    kernel.m_pNodeGlobalIdToLocal = mesh.byLabel.nodeIndex.Data();
    kernel.m_pIsRunnerCell = mesh.runnerCells.data();
    kernel.m_bUseNodeLabel = mesh.hasLabels ? 1 : 0;
    std::copy(mesh.box.begin(), mesh.box.end(), kernel.m_dBox);
    kernel.m_dMeshSize = mesh.meshSize;
    kernel.m_dGeomTolerance = mesh.geomTolerance;
}

void AppendBoxes(const std::vector<EntityRecord>& records, int idBefore,
                 std::vector<BoxTree::Entry>& entries) {
    for (std::size_t i = 1; i < records.size(); ++i) {
        const EntityRecord& record = records[i];
        entries.push_back({{{record.boxMin[0], record.boxMin[1], record.boxMin[2]},
                            {record.boxMax[0], record.boxMax[1], record.boxMax[2]}},
                           idBefore + static_cast<int>(i)});
    }
}

// Also makes the slot, so that later calls only read what is shared.
std::vector<int>& PrepareQuery(MeshKernelState& state, int slot) {
    const std::lock_guard<std::mutex> lock(state.treeMutex);
    if (state.treeLacksMesh) {
        const KernelMesh& mesh = state.mesh;
        std::vector<BoxTree::Entry> entries;
        entries.reserve(mesh.faces.records.size() + mesh.cells.records.size());
        AppendBoxes(mesh.faces.records, 0, entries);
        AppendBoxes(mesh.cells.records, static_cast<int>(mesh.faces.records.size()) - 1, entries);
        state.tree.AddAll(entries);
        state.treeLacksMesh = false;
    }
    const std::size_t index = static_cast<std::size_t>(std::max(slot, 0));
    if (index >= state.treeSlots.size()) {
        state.treeSlots.resize(index + 1);
    }
    return state.treeSlots[index];
}

}  // namespace

KernelMesh TakeMesh(CQNLOptKer& kernel) {
    return std::move(kernel.m_pState->mesh);
}

void AdoptMesh(CQNLOptKer& kernel, KernelMesh mesh) {
    kernel.m_pState->mesh = std::move(mesh);
    kernel.m_pState->tree.Clear();
    kernel.m_pState->treeLacksMesh = true;
    Publish(kernel.m_pState->mesh, kernel);
}

}  // namespace qnl::kernel

CQNLOptKer::CQNLOptKer() : m_pState(std::make_unique<qnl::kernel::MeshKernelState>().release()) {}

CQNLOptKer::~CQNLOptKer() {
    const std::unique_ptr<qnl::kernel::MeshKernelState> owner(m_pState);
}

int CQNLOptKer::argumentHandle(int argc, char** argv, char* word0, char* word1, char* word2, char* word3,
                               char* word4, char* word5) {
    char* const buffers[qnl::kernel::kWords] = {word0, word1, word2, word3, word4, word5};
    std::string_view words[qnl::kernel::kWords];
    int copied = 0;
    for (; copied < std::min(argc, qnl::kernel::kWords) && argv[copied] != nullptr; ++copied) {
        words[copied] = argv[copied];
        if (words[copied].size() >= qnl::kernel::kWordBuffer) {
            throw std::length_error("command-line word " + std::to_string(copied) + " has " +
                                    std::to_string(words[copied].size()) + " bytes, at most " +
                                    std::to_string(qnl::kernel::kWordBuffer - 1) + " fit");
        }
    }
    for (int i = 0; i < qnl::kernel::kWords; ++i) {
        words[i].copy(buffers[i], words[i].size());
        buffers[i][words[i].size()] = '\0';
    }
    return copied;
}

void CQNLOptKer::getMsgPtr(CQNLKNLogErrMsgTool* logTool) {
    m_pLogTool = logTool;
}

int CQNLOptKer::ReadMeshData(char* path, int) {
    try {
        qnl::kernel::AdoptMesh(*this, qnl::kernel::LoadKernelMesh(path));
    } catch (const qnl::kernel::MeshFault& fault) {
        return qnl::kernel::ReportUnreadable(path, fault.what());
    } catch (const std::bad_alloc&) {
        qnl::kernel::ReportUnreadable(path,
                                      qnl::kernel::WithFile(path, "not enough memory for this mesh").what());
        throw;
    } catch (const std::exception& error) {
        return qnl::kernel::ReportUnreadable(path, qnl::kernel::WithFile(path, error.what()).what());
    }
    if (m_nLogLevel > 0) {
        qnl::kernel::ReportCounts(m_pState->mesh);
    }
    return 1;
}

void CQNLOptKer::InitialzeSearch(int nThread) {
    const std::size_t slots = static_cast<std::size_t>(std::max(nThread, 0));
    const std::lock_guard<std::mutex> lock(m_pState->treeMutex);
    m_pState->treeSlots.resize(std::max(slots, m_pState->treeSlots.size()));
    if (m_pState->mesh.rays) {
        m_pState->mesh.rays->PrepareSlots(nThread);
    }
}

int* CQNLOptKer::FindPassElemByAnyRay(int& count, double x, double y, double z, double dx, double dy,
                                      double dz, int thread) {
    count = 0;
    if (!m_pState->mesh.rays) {
        return nullptr;
    }
    return m_pState->mesh.rays->Find(count, {x, y, z}, {dx, dy, dz}, thread);
}

void CQNLOptKer::shellSorting(int n, double* keys, int* ids) const {
    qnl::kernel::SortByDepth(n, keys, ids, m_pState->mesh.epsilon);
}

int CQNLOptKer::ComputeNodeSurfaceNormal(double* nx, double* ny, double* nz) {
    const qnl::kernel::KernelMesh& mesh = m_pState->mesh;
    const std::vector<qnl::kernel::Point> normals = qnl::kernel::NodeNormals(mesh.nodes, mesh.faces.records);
    for (const int node : mesh.boundary.Nodes()) {
        const std::size_t index = static_cast<std::size_t>(node) + 1;
        nx[index] = normals[index][0];
        ny[index] = normals[index][1];
        nz[index] = normals[index][2];
    }
    return 1;
}

void CQNLOptKer::SmoothSurfaceNodeValue(double* array, int iterations) {
    qnl::kernel::SmoothOverBoundary(m_pState->mesh.boundary, array + 1, iterations);
}

void CQNLOptKer::SetADTreeRange(double, double, double, double, double, double, int, int, int) {
    m_pState->tree.Clear();
    m_pState->treeLacksMesh = false;
}

void CQNLOptKer::AddSurfaceToADTree(int id, double xMin, double yMin, double zMin, double xMax, double yMax,
                                    double zMax) {
    m_pState->tree.Add(id, {{xMin, yMin, zMin}, {xMax, yMax, zMax}});
}

int* CQNLOptKer::SearchNearBlockID(double xMin, double yMin, double zMin, double xMax, double yMax,
                                   double zMax, int& count, int slot) {
    std::vector<int>& ids = qnl::kernel::PrepareQuery(*m_pState, slot);
    m_pState->tree.Find({{xMin, yMin, zMin}, {xMax, yMax, zMax}}, ids);
    count = static_cast<int>(ids.size());
    return ids.data();
}
