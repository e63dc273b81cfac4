#include "frozen/NodeSelection.h"

#include <algorithm>

#include "context/Messages.h"
#include "frozen/SurfaceCorners.h"
#include "mesh/MeshNodes.h"

namespace qnl::frozen {

namespace {

bool IsEvaluated(const FrozenLayerJob& job, NodeId node) {
    const mesh::NodeClass nodeClass = mesh::ClassOf(job, node);
    return nodeClass == mesh::NodeClass::Part || (job.m_nStage != 1 && nodeClass < mesh::NodeClass::Part);
}

/// Marks every node that is evaluated and not marked yet, and hands it over in face and corner order.
template <typename Take>
void MarkSurfaceNodes(FrozenLayerJob& job, Take take) {
    ForEachSurfaceCorner(job, [&](NodeId node) {
        int& isMarked = job.m_pSurfNodeFlag[node.Value()];
        if (isMarked == 0 && IsEvaluated(job, node)) {
            isMarked = 1;
            take(node);
        }
    });
}

}  // namespace

void SelectSurfaceNodes(FrozenLayerJob& job) {
    job.m_nSurfaceNodes = 0;
    MarkSurfaceNodes(job, [&job](NodeId) { ++job.m_nSurfaceNodes; });
    LogPlain(job, "nSurfaceNodes = %d \n", job.m_nSurfaceNodes);
    if (!job.m_pSurfNodeList) {
        job.m_pSurfNodeList = NewFromOne<int>(job.m_nSurfaceNodes);
    }
    std::fill_n(job.m_pSurfNodeFlag.get(), static_cast<std::size_t>(job.m_nNodes) + 1, 0);
    job.m_nSurfaceNodes = 0;
    MarkSurfaceNodes(job, [&job](NodeId node) { job.m_pSurfNodeList[++job.m_nSurfaceNodes] = node.Value(); });
}

}  // namespace qnl::frozen
