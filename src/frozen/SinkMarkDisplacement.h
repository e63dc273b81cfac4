#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Replaces `frozenRatio` (by node, percent or indicator) by the sink-mark displacement in mm: the warpage
/// displacement along the inward normal less a reference surface, which is held at the nodes with a value
/// of at most 0.1 and spread from them to the others by 400 smoothing sweeps. Fixed nodes end with 0.
void ComputeSinkMarkDisplacement(FrozenLayerJob& job, double* frozenRatio);

}  // namespace qnl::frozen
