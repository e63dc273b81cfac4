#include "job/OutputTimes.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "base/WindowsPath.h"
#include "context/ObservedStep.h"
#include "frozen/StageDriver.h"
#include "input/TemperatureData.h"
#include "input/Thickness.h"
#include "job/CarriedState.h"
#include "mesh/DataExtension.h"
#include "profile/search/SearchFile.h"

namespace qnl::job {

namespace {

constexpr int kLoadFailed = -3000;
constexpr int kStageFailed = -4000;

bool Always(const FrozenLayerJob& /*job*/) {
    return true;
}

/// One step of an output time, the status of a time in which it fails, and whether a job has it.
struct TimeStep {
    RunStep name;
    bool (*run)(FrozenLayerJob&, const char* inputResult);
    int failure = 1;
    bool (*applies)(const FrozenLayerJob&) = Always;
};

constexpr std::array<TimeStep, 6> kTimeSteps{{
    {RunStep::FreshStart,
     [](FrozenLayerJob& job, const char*) {
         DropCarriedState(job);
         return true;
     },
     1, [](const FrozenLayerJob& job) { return !job.m_options.Rules().carriesState; }},
    {RunStep::StageData,
     [](FrozenLayerJob& job, const char* inputResult) { return LoadTemperatureData(job, inputResult) == 1; },
     kLoadFailed},
    {RunStep::Extension,
     [](FrozenLayerJob& job, const char*) {
         mesh::ExtendNodeToSurface(job);
         mesh::ExtendNodeToInnerCell(job);
         return true;
     }},
    {RunStep::Thickness, [](FrozenLayerJob& job, const char*) { return ReadThickness(job) == 1; }, 1,
     [](const FrozenLayerJob& job) { return job.m_bIsGasIn == 1; }},
    {RunStep::FrozenLayer,
     [](FrozenLayerJob& job, const char*) { return frozen::RunFrozenLayerStage(job) == 1; }, kStageFailed},
    {RunStep::SearchFile,
     [](FrozenLayerJob& job, const char*) {
         WriteSearchResult(job);
         job.m_bSearchDone = 1;
         return true;
     },
     1, [](const FrozenLayerJob& job) { return job.m_bSearchDone == 0; }},
}};

bool IsKept(const FrozenLayerJob& job, int index) {
    const std::vector<int>& kept = job.m_options.keptTimes;
    return std::find(kept.begin(), kept.end(), index) != kept.end();
}

int ObserveTime(FrozenLayerJob& job, int index, const char* inputResult) {
    if (IsKept(job, index)) {
        return 1;
    }
    RunObserver* observer = job.m_options.observer;
    if (observer != nullptr) {
        observer->TimeBegins(index, job.m_nIntermediateTimes, inputResult);
    }
    job.m_stageFile = inputResult;
    if (job.m_bKernelFlag != 1) {
        job.m_inputDigests.Of(job.m_stageFile);
    }
    const int status = RunTimeSteps(job, inputResult, RunStep::FreshStart, RunStep::SearchFile);
    if (observer != nullptr) {
        observer->TimeEnds(index, status == 1, job);
    }
    return status;
}

}  // namespace

int RunTimeSteps(FrozenLayerJob& job, const char* inputResult, RunStep first, RunStep last) {
    for (const TimeStep& step : kTimeSteps) {
        const bool asked = first <= step.name && step.name <= last && step.applies(job);
        if (asked && !Observed(job, step.name, [&] { return step.run(job, inputResult); }) &&
            step.failure != 1) {
            return step.failure;
        }
    }
    return 1;
}

int EvaluateBaseTime(FrozenLayerJob& job, const char* inputResult) {
    return ObserveTime(job, 0, inputResult);
}

int EvaluateOutputTimes(FrozenLayerJob& job, const char* inputResult) {
    EvaluateBaseTime(job, inputResult);
    const std::string baseResult(job.m_szResultFile.View());
    for (int i = 0; i < job.m_nIntermediateTimes;) {
        ++i;
        const std::string input = IndexedName(inputResult, i);
        job.m_szResultFile.Set(IndexedName(baseResult, i));
        ObserveTime(job, i, input.c_str());
    }
    job.m_szResultFile.Set(baseResult);
    return 1;
}

}  // namespace qnl::job
