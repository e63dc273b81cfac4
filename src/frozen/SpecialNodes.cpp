#include "frozen/SpecialNodes.h"

#include <array>

#include "frozen/NodeSelection.h"

namespace qnl::frozen {

namespace {

struct ClearedArray {
    OwnedArray<double> FrozenLayerJob::*array;
    unsigned char FrozenLayerJob::*condition;
};

constexpr std::array<ClearedArray, 5> kClearedArrays{{
    {&FrozenLayerJob::m_pSinkMarkWork, &FrozenLayerJob::m_bHasIntermediateTimes},
    {&FrozenLayerJob::m_pSinkMarkTotal, &FrozenLayerJob::m_bHasIntermediateTimes},
    {&FrozenLayerJob::m_pPackingIndex, &FrozenLayerJob::m_bHasIntermediateTimes},
    {&FrozenLayerJob::m_pMaxVolumeShrinkage, &FrozenLayerJob::m_bHasFlow},
    {&FrozenLayerJob::m_pFlakeColorIntensity, &FrozenLayerJob::m_bIsFlakeLightIntensity},
}};

void ClearNode(FrozenLayerJob& job, int node) {
    for (const ClearedArray& cleared : kClearedArrays) {
        if (job.*cleared.condition == 1 && job.*cleared.array) {
            (job.*cleared.array)[static_cast<std::size_t>(node)] = 0.0;
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
