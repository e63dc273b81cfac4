#include "job/OutputTimes.h"

#include <string>

#include "base/WindowsPath.h"
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

int EvaluateTime(FrozenLayerJob& job, const char* inputResult) {
    if (job.m_options.corrected) {
        DropCarriedState(job);
    }
    if (LoadTemperatureData(job, inputResult) != 1) {
        return kLoadFailed;
    }
    mesh::ExtendNodeToSurface(job);
    mesh::ExtendNodeToInnerCell(job);
    if (job.m_bIsGasIn == 1) {
        ReadThickness(job);
    }
    if (frozen::RunFrozenLayerStage(job) != 1) {
        return kStageFailed;
    }
    if (job.m_bSearchDone == 0) {
        WriteSearchResult(job);
        job.m_bSearchDone = 1;
    }
    return 1;
}

int ObserveTime(FrozenLayerJob& job, int index, const char* inputResult) {
    RunObserver* observer = job.m_options.observer;
    if (observer != nullptr) {
        observer->TimeBegins(index, job.m_nIntermediateTimes, inputResult);
    }
    const int status = EvaluateTime(job, inputResult);
    if (observer != nullptr) {
        observer->TimeEnds(index, status == 1, job);
    }
    return status;
}

}  // namespace

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
