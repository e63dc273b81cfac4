#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::job {

/// Evaluates the base output time and then the intermediate ones, 1 to m_nIntermediateTimes. A time whose
/// stage file cannot be loaded is passed over. Gives 1; m_szResultFile ends as the base pass left it.
int EvaluateOutputTimes(FrozenLayerJob& job, const char* inputResult);

/// The base pass: 1, -3000 when the stage file cannot be loaded, -4000 when the stage fails.
int EvaluateBaseTime(FrozenLayerJob& job, const char* inputResult);

/// One output time as a table of steps: runs those from `first` to `last`, both included, out of FreshStart
/// to FrozenLayer and SearchFile, and stops behind the first that fails. Gives 1, -3000 or -4000 as above.
int RunTimeSteps(FrozenLayerJob& job, const char* inputResult, RunStep first, RunStep last);

}  // namespace qnl::job
