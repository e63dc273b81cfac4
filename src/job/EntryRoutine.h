#pragma once

#include "context/RunOptions.h"

namespace qnl::job {

/// Exit codes of a run.
enum class ExitCode : int {
    Normal = 1,
    MaterialFailed = -1000,
    MeshFailed = -2000,
    Exception = -5000,
};

/// Runs one frozen-layer evaluation from start to end and gives its exit code.
///
/// `argv[0]` is the stage result file; the following words are project directory, project name, analysis
/// code and run, and, in a list of exactly five, the run word is also the count of intermediate output
/// times. No exception leaves it unless printing its message fails.
int RunFrozenLayer(int argc, char** argv, const RunOptions& options = {});

}  // namespace qnl::job
