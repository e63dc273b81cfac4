#include "frozen/SpecialNodes.h"

#include "context/OutputQuantities.h"
#include "mesh/MeshNodes.h"

namespace qnl::frozen {

namespace {

void ClearNode(FrozenLayerJob& job, NodeId node) {
    const RunTraits run = TraitsOf(job);
    for (const OutputQuantity& quantity : kOutputQuantities) {
        if (quantity.special == kSpecialCleared && quantity.computed(run)) {
            (job.*quantity.array)[node.Value()] = 0.0;
        }
    }
}

}  // namespace

void ClearSpecialNodes(FrozenLayerJob& job) {
    for (ListPosition i(1); i <= ListPosition(job.m_nSurfaceNodes); ++i) {
        const NodeId node = mesh::ListedNode(job, i);
        if (mesh::ClassOf(job, node) == mesh::NodeClass::Special) {
            ClearNode(job, node);
        }
    }
}

}  // namespace qnl::frozen
