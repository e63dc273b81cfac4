#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Hands over the corner nodes of the boundary faces in face and corner order, a node as often as it is a
/// corner.
template <typename Take>
void ForEachSurfaceCorner(const FrozenLayerJob& job, Take take) {
    for (int s = 1; s <= job.m_nSurfaces; ++s) {
        const SurfaceRecord& face = job.p_Surfce[s];
        for (int corner = 1; corner <= face.nNode; ++corner) {
            take(NodeId(face.nodes[corner]));
        }
    }
}

}  // namespace qnl::frozen
