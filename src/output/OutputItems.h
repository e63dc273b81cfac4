#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::output {

/// Fills the output item table: texts, sources, output flags, running maxima and minima over the nodes,
/// and the number of items written. A volume shrinkage that is zero everywhere is not written. Gives 1.
int SetOutputItemInformation(FrozenLayerJob& job);

}  // namespace qnl::output
