#pragma once

#include <string>
#include <vector>

#include "context/Mode.h"
#include "project/ProjectPaths.h"
#include "project/ResultState.h"

namespace qnl::runs {

/// Indices of those output times, of the base time and `intermediateTimes` more, whose results are what a run
/// on these terms would write.
std::vector<int> FreshTimes(const project::StageFile& base, int intermediateTimes,
                            const project::RunTerms& terms);

/// Of these, the ones that a resumed run passes over: the last output time is none of them where the run
/// leaves the file of its sink vectors.
std::vector<int> KeptTimes(const project::StageFile& base, int intermediateTimes,
                           const project::RunTerms& terms, int logLevel);

/// Raises InputProblem for a mode in which an output time depends on those before.
void RefuseResuming(Mode mode);

/// A sentence on --resume where it would save some of the work; else empty.
std::string ResumeHint(std::size_t fresh, int intermediateTimes);

}  // namespace qnl::runs
