#pragma once

#include <vector>

#include "context/FrozenLayerJob.h"

namespace qnl::profile {

/// The positions of the surface-node list, 1-based, in an order in which nodes that follow each other stand
/// near each other: they find the mesh and the results around them still in the cache.
std::vector<int> NodeOrder(const FrozenLayerJob& job);

}  // namespace qnl::profile
