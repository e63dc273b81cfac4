#include "mesh/MeshImport.h"

#include <omp.h>

#include <algorithm>
#include <cstddef>

#include "base/LargestLabel.h"
#include "context/Messages.h"

namespace qnl::mesh {

namespace {

double Now(const FrozenLayerJob& job) {
    return job.m_pCom ? job.m_pCom->Time() : 0.0;
}

void CopyConstants(FrozenLayerJob& job, const CQNLOptKer& kernel) {
    job.m_nMeshHeader0 = kernel.m_nMeshHeader0;
    job.m_nNodes = kernel.m_nNodes;
    job.m_nCells = kernel.m_nCells;
    job.m_nSurfaces = kernel.m_nSurfaces;
    job.m_nMeshWord56 = kernel.m_nMeshWord56;
    job.m_bUseNodeLabel = kernel.m_bUseNodeLabel;
    std::copy_n(kernel.m_dBox, 3, job.m_dBoxMax);
    std::copy_n(kernel.m_dBox + 3, 3, job.m_dBoxMin);
    job.m_dMeshSize = kernel.m_dMeshSize;
    job.m_dGeomTolerance = kernel.m_dGeomTolerance;
}

struct BorrowedArray {
    const char* name;
    bool (*take)(FrozenLayerJob&, const CQNLOptKer&);  ///< false when the kernel has none
};

// In the order in which they are taken and checked.
constexpr BorrowedArray kBorrowedArrays[] = {
    {"p_Node", [](FrozenLayerJob& j, const CQNLOptKer& k) { return (j.p_Node = k.p_Node) != nullptr; }},
    {"p_Surfce", [](FrozenLayerJob& j, const CQNLOptKer& k) { return (j.p_Surfce = k.p_Surfce) != nullptr; }},
    {"p_Cell", [](FrozenLayerJob& j, const CQNLOptKer& k) { return (j.p_Cell = k.p_Cell) != nullptr; }},
    {"m_pIsPartNodeTemp",
     [](FrozenLayerJob& j, const CQNLOptKer& k) {
         return (j.m_pIsPartNodeTemp = k.m_pIsPartNodeTemp) != nullptr;
     }},
    {"m_pNotRunnerNode",
     [](FrozenLayerJob& j, const CQNLOptKer& k) {
         return (j.m_pNotRunnerNode = k.m_pNotRunnerNode) != nullptr;
     }},
    {"m_pNodeGlobalIdToLocal",
     [](FrozenLayerJob& j, const CQNLOptKer& k) {
         return (j.m_pNodeGlobalIdToLocal = k.m_pNodeGlobalIdToLocal) != nullptr;
     }},
    {"m_pIsRunnerCell",
     [](FrozenLayerJob& j, const CQNLOptKer& k) {
         return (j.m_pIsRunnerCell = k.m_pIsRunnerCell) != nullptr;
     }},
};

}  // namespace

int ReadMesh(FrozenLayerJob& job) {
    const double start = Now(job);
    const int status = job.m_pOptKer->ReadMeshData(job.m_szMeshFile.Data(), job.m_bKernelFlag == 1 ? 1 : 0);
    LogSeconds(job, "ReadMeshData Time: ", Now(job) - start);
    return status;
}

int TakeOverMeshData(FrozenLayerJob& job) {
    const CQNLOptKer& kernel = *job.m_pOptKer;
    CopyConstants(job, kernel);
    for (const BorrowedArray& array : kBorrowedArrays) {
        if (!array.take(job, kernel)) {
            LogPlain(job, "%s Error!\n", array.name);
            return -1;
        }
    }
    job.m_nMaxLabel = LargestLabel(job.p_Node, job.m_nNodes);
    return 1;
}

void SetUpThreads(FrozenLayerJob& job) {
#pragma omp parallel default(none) shared(job)
    {
#pragma omp single
        job.m_nThreads = omp_get_num_threads();
    }
    const int threads = job.m_nThreads;
    LogPlain(job, "nThread = %d\n", threads);
    const auto slots = static_cast<std::size_t>(threads);
    job.m_pThreadFindCount = std::make_unique<int[]>(slots);
    job.m_pThreadRecordCount = std::make_unique<int[]>(slots);
    job.m_pThreadFindTime = std::make_unique<double[]>(slots);
    job.m_pOptKer->InitialzeSearch(threads);
}

}  // namespace qnl::mesh
