#pragma once

namespace qnl::job {

/// Exit codes of a run.
enum class ExitCode : int {
    Normal = 1,
    MaterialFailed = -1000,
    MeshFailed = -2000,
    Exception = -5000,
};

}  // namespace qnl::job
