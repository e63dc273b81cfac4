#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::job {

/// Evaluates the base output time and then the intermediate ones, 1 to m_nIntermediateTimes. A time whose
/// stage file cannot be loaded is passed over. Gives 1; m_szResultFile ends as the base pass left it.
int EvaluateOutputTimes(FrozenLayerJob& job, const char* inputResult);

/// The base pass: 1, -3000 when the stage file cannot be loaded, -4000 when the stage fails.
int EvaluateBaseTime(FrozenLayerJob& job, const char* inputResult);

}  // namespace qnl::job
