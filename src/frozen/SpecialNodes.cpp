#include "frozen/SpecialNodes.h"

#include "context/OutputQuantities.h"
#include "frozen/NodeSelection.h"

namespace qnl::frozen {

namespace {

void ClearNode(FrozenLayerJob& job, int node) {
    for (const OutputQuantity& quantity : kOutputQuantities) {
        if (quantity.special == kSpecialCleared && quantity.computed(job)) {
            (job.*quantity.array)[static_cast<std::size_t>(node)] = 0.0;
        }
    }
}

}  // namespace

void ClearSpecialNodes(FrozenLayerJob& job) {
    constexpr int kSpecialNode = -1;
    for (int i = 1; i <= job.m_nSurfaceNodes; ++i) {
        const int node = job.m_pSurfNodeList[i];
        if (NodeClass(job, node) == kSpecialNode) {
            ClearNode(job, node);
        }
    }
}

}  // namespace qnl::frozen
