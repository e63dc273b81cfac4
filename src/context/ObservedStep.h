#pragma once

#include "context/FrozenLayerJob.h"
#include "context/RunStep.h"

namespace qnl {

/// Does the work of a step and gives what it gives, between telling the job's observer, if there is one, of
/// its begin and of its end. A step that raises has no end.
template <typename Work>
auto Observed(const FrozenLayerJob& job, RunStep step, Work work) {
    RunObserver* const observer = job.m_options.observer;
    if (observer == nullptr) {
        return work();
    }
    observer->StepBegins(step, job);
    const auto outcome = work();
    observer->StepEnds(step, job);
    return outcome;
}

}  // namespace qnl
