#include "frozen/NodeSelection.h"

#include <algorithm>

#include "context/Messages.h"

namespace qnl::frozen {

namespace {

bool IsEvaluated(const FrozenLayerJob& job, int node) {
    const int nodeClass = NodeClass(job, node);
    return nodeClass == 1 || (job.m_nStage != 1 && nodeClass < 1);
}

/// Marks every node that is evaluated and not marked yet, and hands it over in face and corner order.
template <typename Take>
void MarkSurfaceNodes(FrozenLayerJob& job, Take take) {
    for (int s = 1; s <= job.m_nSurfaces; ++s) {
        const SurfaceRecord& face = job.p_Surfce[s];
        for (int corner = 1; corner <= face.nNode; ++corner) {
            const int node = face.nodes[corner];
            if (job.m_pSurfNodeFlag[node] == 0 && IsEvaluated(job, node)) {
                job.m_pSurfNodeFlag[node] = 1;
                take(node);
            }
        }
    }
}

}  // namespace

void SelectSurfaceNodes(FrozenLayerJob& job) {
    job.m_nSurfaceNodes = 0;
    MarkSurfaceNodes(job, [&job](int) { ++job.m_nSurfaceNodes; });
    LogPlain(job, "nSurfaceNodes = %d \n", job.m_nSurfaceNodes);
    if (!job.m_pSurfNodeList) {
        job.m_pSurfNodeList = std::make_unique<int[]>(static_cast<std::size_t>(job.m_nSurfaceNodes) + 1);
    }
    std::fill_n(job.m_pSurfNodeFlag.get(), static_cast<std::size_t>(job.m_nNodes) + 1, 0);
    job.m_nSurfaceNodes = 0;
    MarkSurfaceNodes(job, [&job](int node) { job.m_pSurfNodeList[++job.m_nSurfaceNodes] = node; });
}

}  // namespace qnl::frozen
