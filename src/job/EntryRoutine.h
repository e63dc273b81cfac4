#pragma once

#include "context/RunOptions.h"
#include "job/ExitCode.h"

namespace qnl::job {

/// Runs one frozen-layer evaluation from start to end and gives its exit code.
///
/// `argv[0]` is the stage result file; the following words are project directory, project name, analysis
/// code and run, and, in a list of exactly five, the run word is also the count of intermediate output
/// times. No exception leaves it unless printing its message raises one; the job is destroyed by then.
int RunFrozenLayer(int argc, char** argv, const RunOptions& options = {});

}  // namespace qnl::job
