#pragma once

#include "context/FrozenLayerJob.h"
#include "profile/resolved/ResolvedProfile.h"

namespace qnl::profile {

/// The frozen layers of the wall below a node, by the freeze temperature of the run's material. With a
/// material that has none only the wall is told, and the rest is not a number. The profile has two samples or
/// more.
WallLayers FrozenWall(const FrozenLayerJob& job, const ResolvedProfile& profile);

}  // namespace qnl::profile
