#include "mesh/DataExtension.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "context/Messages.h"
#include "mesh/CornerMean.h"

namespace qnl::mesh {

namespace {

template <typename Value, std::size_t Slots>
auto JoinSlots(int nodes, const OwnedArray<Value> (&nodeValues)[Slots]) {
    std::array<const Value*, Slots> fields{};
    for (std::size_t slot = 0; slot < Slots; ++slot) {
        fields[slot] = nodeValues[slot].get();
    }
    return JoinFields(nodes, fields);
}

/// Fills the entity values of every slot that exists on both sides. Without any, as with the velocity in
/// runs without flow results, neither nodes nor entities are visited.
template <typename Value, std::size_t Slots>
void ExtendSlots(const EntityRecord* entities, int count, int nodes,
                 const OwnedArray<Value> (&nodeValues)[Slots],
                 const OwnedArray<Value> (&entityValues)[Slots]) {
    std::array<Value*, Slots> means{};
    for (std::size_t slot = 0; slot < Slots; ++slot) {
        means[slot] = nodeValues[slot] ? entityValues[slot].get() : nullptr;
    }
    const bool any =
        std::any_of(means.begin(), means.end(), [](const Value* mean) { return mean != nullptr; });
    if (any) {
        MeansOverEntities(entities, count, JoinSlots(nodes, nodeValues), means);
    }
}

}  // namespace

int ExtendNodeToSurface(FrozenLayerJob& job) {
    ExtendSlots(job.p_Surfce, job.m_nSurfaces, job.m_nNodes, job.m_pNodeData, job.m_pSurfData);
    LogLine(job, "Data extend from Node to surface end");
    return 1;
}

int ExtendNodeToInnerCell(FrozenLayerJob& job) {
    ExtendSlots(job.p_Cell, job.m_nCells, job.m_nNodes, job.m_pNodeData, job.m_pCellData);
    ExtendSlots(job.p_Cell, job.m_nCells, job.m_nNodes, job.m_pNodeVector, job.m_pCellVector);
    LogLine(job, "Data from node to InnerCell end");
    return 1;
}

int AverageSurfaceMeshSize(FrozenLayerJob& job) {
    job.m_dSurAvgMeshSize = MeanBoxDiagonal(job.p_Surfce, job.m_nSurfaces);
    LogPlain(job, "SurAvgMeshSize = %lf \n", job.m_dSurAvgMeshSize);
    return 1;
}

}  // namespace qnl::mesh
