#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::job {

/// Records end and total time and prints the closing report: per thread the pass elements recorded, the
/// searches made and their time, then the total time. Gives 1.
int MakeRunSummary(FrozenLayerJob& job);

}  // namespace qnl::job
