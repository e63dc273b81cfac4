#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Smooths every shown result over the surface: 2 sweeps each, 200 for the sink-mark reference. Velocity
/// components are not smoothed.
void SmoothResults(FrozenLayerJob& job);

}  // namespace qnl::frozen
