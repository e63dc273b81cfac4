#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Sets the sink, packing, shrinkage and flake values of the listed nodes of class -1 to 0.
void ClearSpecialNodes(FrozenLayerJob& job);

}  // namespace qnl::frozen
