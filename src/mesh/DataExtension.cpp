#include "mesh/DataExtension.h"

#include <cstddef>
#include <vector>

#include "job/Messages.h"
#include "mesh/CornerMean.h"

namespace {

template <typename Value, std::size_t Slots>
void ExtendSlots(const EntityRecord* entities, int count, const OwnedArray<Value> (&nodeValues)[Slots],
                 const OwnedArray<Value> (&entityValues)[Slots]) {
    std::vector<qnl::MeanTarget<Value>> targets;
    targets.reserve(Slots);
    for (std::size_t slot = 0; slot < Slots; ++slot) {
        if (nodeValues[slot] && entityValues[slot]) {
            targets.push_back({nodeValues[slot].get(), entityValues[slot].get()});
        }
    }
    qnl::MeansOverEntities(entities, count, targets);
}

}  // namespace

int ExtendNodeToSurface(FrozenLayerJob& job) {
    ExtendSlots(job.p_Surfce, job.m_nSurfaces, job.m_pNodeData, job.m_pSurfData);
    LogLine(job, "Data extend from Node to surface end");
    return 1;
}

int ExtendNodeToInnerCell(FrozenLayerJob& job) {
    ExtendSlots(job.p_Cell, job.m_nCells, job.m_pNodeData, job.m_pCellData);
    ExtendSlots(job.p_Cell, job.m_nCells, job.m_pNodeVector, job.m_pCellVector);
    LogLine(job, "Data from node to InnerCell end");
    return 1;
}

int AverageSurfaceMeshSize(FrozenLayerJob& job) {
    job.m_dSurAvgMeshSize = qnl::MeanBoxDiagonal(job.p_Surfce, job.m_nSurfaces);
    LogPlain(job, "SurAvgMeshSize = %lf \n", job.m_dSurAvgMeshSize);
    return 1;
}
