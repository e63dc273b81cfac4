#pragma once

#include "job/FrozenLayerJob.h"

/// Smooths every shown result over the surface: 2 sweeps each, 200 for the sink-mark reference. Velocity
/// components are not smoothed.
void SmoothResults(FrozenLayerJob& job);
