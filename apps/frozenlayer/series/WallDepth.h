#pragma once

#include "context/FrozenLayerJob.h"
#include "profile/rays/RayProfile.h"

namespace qnl::series {

/// Distance from the first to the last of the pass elements along the ray with the unit direction
/// `inward`, mm, measured between their reference points; 0 for none.
double DepthSpan(const profile::PassElementMesh& mesh, const profile::FoundElements& found,
                 const Vector3& inward);

/// Part surface nodes whose wall is deeper than the depth window.
struct DeepWalls {
    int deep = 0;
    int nodes = 0;        ///< part surface nodes with a profile
    double window = 0.0;  ///< mm
};

/// Counts them along the inward normals that the search was made with, over the pass elements that the
/// job still holds.
DeepWalls CountDeepWalls(const FrozenLayerJob& job);

}  // namespace qnl::series
