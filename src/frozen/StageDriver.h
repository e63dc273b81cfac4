#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// The frozen-layer stage of one output time, whose data are loaded and extended: selects the surface
/// nodes, evaluates them in parallel, thins, smooths, derives sink marks and writes the result file.
/// Gives 1.
int RunFrozenLayerStage(FrozenLayerJob& job);

}  // namespace qnl::frozen
