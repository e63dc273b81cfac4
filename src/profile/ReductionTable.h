#pragma once

#include "base/RelaxedValue.h"
#include "profile/ProfileInputs.h"
#include "profile/Reductions.h"

namespace qnl::profile {

/// Forms the quantities of one node that the stage has, in the order of the table. `window` is the depth
/// window that all nodes share, mm: some quantities set it, others take it as it stands.
void ReduceProfile(Reduced node, RelaxedValue<double>& window);

/// True where a quantity of the run takes the depth window before one sets it at the same node, and one
/// does set it later.
bool ReadsWindowBeforeSetting(const RunTraits& run);

}  // namespace qnl::profile
