#include "job/EntryRoutine.h"

#include <omp.h>

#include <iostream>
#include <new>
#include <optional>

#include "context/FrozenLayerJob.h"
#include "job/RunSequence.h"
#include "platform/CQNLKNLogErrMsgTool.h"

namespace qnl::job {

namespace {

/// The mesh is read in parallel as well, so the threads are set before anything is.
void ApplyOptions(FrozenLayerJob& job, const RunOptions& options) {
    job.m_options = options;
    job.m_nLogLevel = options.logLevel;
    job.m_bKernelFlag = options.fibreProbe ? 1 : 0;
    if (options.threads > 0) {
        omp_set_num_threads(options.threads);
    }
}

/// Prints what the exception in flight says. When that raises an exception of its own, the job is destroyed
/// here: nobody may catch it outside, and the stack is then not unwound.
void ReportException(std::optional<FrozenLayerJob>& job) {
    try {
        CQNLKNLogErrMsgTool::printErrorOutofMemory("", std::cout);
    } catch (...) {
        job.reset();
        throw;
    }
}

}  // namespace

int RunFrozenLayer(int argc, char** argv, const RunOptions& options) {
    std::optional<FrozenLayerJob> job;
    try {
        job.emplace();
        ApplyOptions(*job, options);
        job->m_szInputResult = argv[0];
        return static_cast<int>(RunSteps(*job, RunStep::CommandLine, RunStep::Report, {argc, argv}).code);
    } catch (const std::bad_alloc& failure) {
        if (job) {
            job->m_pBadAlloc = &failure;
        }
        ReportException(job);
    } catch (...) {
        ReportException(job);
    }
    return static_cast<int>(ExitCode::Exception);
}

}  // namespace qnl::job
