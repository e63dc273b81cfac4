#pragma once

#include <vector>

#include "base/Id.h"
#include "context/FrozenLayerJob.h"

namespace qnl::profile {

/// The positions of the surface-node list in an order in which nodes that follow each other stand
/// near each other: they find the mesh and the results around them still in the cache.
std::vector<ListPosition> NodeOrder(const FrozenLayerJob& job);

}  // namespace qnl::profile
