#pragma once

#include "project/ProjectPaths.h"

namespace qnl::runs {

/// Raises InputProblem when a run cannot write where its results and its search file belong, or when its
/// disk has less room than they take at the very least.
void CheckRunPlace(const project::StageFile& base, int intermediateTimes);

}  // namespace qnl::runs
