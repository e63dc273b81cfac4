#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::job {

/// Corrected mode: forgets everything that one output time leaves behind for the next, so that each is
/// evaluated as if it were the only one. The search of pass elements is kept; the depth window holds its
/// value from the start.
void DropCarriedState(FrozenLayerJob& job);

}  // namespace qnl::job
