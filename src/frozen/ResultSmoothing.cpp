#include "frozen/ResultSmoothing.h"

#include <array>

namespace qnl::frozen {

namespace {

constexpr int kShownSweeps = 2;
constexpr int kReferenceSweeps = 200;

using Job = FrozenLayerJob;

bool Always(const Job&) {
    return true;
}
bool NotCool(const Job& job) {
    return job.m_bHasCool != 1;
}
bool GasNotCool(const Job& job) {
    return NotCool(job) && job.m_bIsGasIn == 1;
}
bool FillCoolingNotCool(const Job& job) {
    return NotCool(job) && job.m_bFillHasCoolingTime == 1;
}
bool FlakeNotCool(const Job& job) {
    return NotCool(job) && job.m_bIsFlakeLightIntensity == 1;
}
bool Cool(const Job& job) {
    return job.m_bHasCool == 1;
}
bool IntermediateTimes(const Job& job) {
    return job.m_bHasIntermediateTimes == 1;
}
bool Flow(const Job& job) {
    return job.m_bHasFlow == 1;
}

struct SmoothedArray {
    OwnedArray<double> Job::*array;
    int sweeps;
    bool (*condition)(const Job&);
};

constexpr std::array<SmoothedArray, 15> kSmoothedArrays{{
    {&Job::m_pFrozenRatio, kShownSweeps, Always},
    {&Job::m_pMaxTemperature, kShownSweeps, Always},
    {&Job::m_pCenterTemperature, kShownSweeps, Always},
    {&Job::m_pAverageTemperature, kShownSweeps, Always},
    {&Job::m_pBulkTemperature, kShownSweeps, NotCool},
    {&Job::m_pSkinRatio, kShownSweeps, GasNotCool},
    {&Job::m_pSkinThickness, kShownSweeps, GasNotCool},
    {&Job::m_pMaxCoolingTime, kShownSweeps, FillCoolingNotCool},
    {&Job::m_pFlakeColorIntensity, kShownSweeps, FlakeNotCool},
    {&Job::m_pMoldTemperatureDiff, kShownSweeps, Cool},
    {&Job::m_pMaxCoolingTime, kShownSweeps, Cool},
    {&Job::m_pSinkMarkWork, kReferenceSweeps, IntermediateTimes},
    {&Job::m_pSinkMarkTotal, kShownSweeps, IntermediateTimes},
    {&Job::m_pPackingIndex, kShownSweeps, IntermediateTimes},
    {&Job::m_pMaxVolumeShrinkage, kShownSweeps, Flow},
}};

}  // namespace

void SmoothResults(FrozenLayerJob& job) {
    for (const SmoothedArray& smoothed : kSmoothedArrays) {
        if (smoothed.condition(job)) {
            job.m_pOptKer->SmoothSurfaceNodeValue((job.*smoothed.array).get(), smoothed.sweeps);
        }
    }
}

}  // namespace qnl::frozen
