#pragma once

#include "context/FrozenLayerJob.h"
#include "context/RunStep.h"
#include "job/ExitCode.h"

namespace qnl::job {

/// The launcher's words; only the step CommandLine looks at them.
struct LauncherCall {
    int argc = 0;
    char** argv = nullptr;
};

/// How the steps of a range ended.
struct SequenceEnd {
    ExitCode code = ExitCode::Normal;
    RunStep last;  ///< the step that failed, or the last one of the range

    explicit operator bool() const { return code == ExitCode::Normal; }
};

/// The run as a table of steps: runs those from `first` to `last`, both included, out of CommandLine to
/// OutputTimes, Release and Report, and stops behind the first that fails. Each step needs those before it;
/// m_szInputResult is set before the first.
SequenceEnd RunSteps(FrozenLayerJob& job, RunStep first, RunStep last, const LauncherCall& call = {});

}  // namespace qnl::job
