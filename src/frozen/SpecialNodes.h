#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Sets the sink, packing, shrinkage and flake values of the listed nodes of class -1 to 0. The smoothing
/// that follows fills them from the nodes around.
void ClearSpecialNodes(FrozenLayerJob& job);

}  // namespace qnl::frozen
