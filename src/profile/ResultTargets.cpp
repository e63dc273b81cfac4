#include "profile/ResultTargets.h"

#include <iterator>

namespace qnl::profile {

namespace {

using Condition = bool (*)(const FrozenLayerJob&);

bool Always(const FrozenLayerJob&) {
    return true;
}
bool Cool(const FrozenLayerJob& job) {
    return job.m_bHasCool != 0;
}
bool NotCool(const FrozenLayerJob& job) {
    return job.m_bHasCool == 0;
}
bool Gas(const FrozenLayerJob& job) {
    return NotCool(job) && job.m_bIsGasIn != 0;
}
bool FillCooling(const FrozenLayerJob& job) {
    return NotCool(job) && job.m_bFillHasCoolingTime != 0;
}
bool Flakes(const FrozenLayerJob& job) {
    return NotCool(job) && job.m_bIsFlakeLightIntensity != 0;
}
bool Intermediate(const FrozenLayerJob& job) {
    return job.m_bHasIntermediateTimes != 0;
}
bool Flow(const FrozenLayerJob& job) {
    return job.m_bHasFlow != 0;
}

struct Rule {
    ProfileSlot slot;
    OwnedArray<double> FrozenLayerJob::*array;
    Condition applies;
};

constexpr Rule kRules[] = {
    {kSlotFrozenRatio, &FrozenLayerJob::m_pFrozenRatio, Always},
    {kSlotMaxTemperature, &FrozenLayerJob::m_pMaxTemperature, Always},
    {kSlotCenterTemperature, &FrozenLayerJob::m_pCenterTemperature, Always},
    {kSlotAverageTemperature, &FrozenLayerJob::m_pAverageTemperature, Always},
    {kSlotSkinOrMoldDifference, &FrozenLayerJob::m_pMoldTemperatureDiff, Cool},
    {kSlotMaxCoolingTime, &FrozenLayerJob::m_pMaxCoolingTime, Cool},
    {kSlotBulkTemperature, &FrozenLayerJob::m_pBulkTemperature, NotCool},
    {kSlotSkinRatio, &FrozenLayerJob::m_pSkinRatio, Gas},
    {kSlotMaxCoolingTime, &FrozenLayerJob::m_pMaxCoolingTime, FillCooling},
    {kSlotFlakeIntensity, &FrozenLayerJob::m_pFlakeColorIntensity, Flakes},
    {kSlotPackingIndex, &FrozenLayerJob::m_pPackingIndex, Intermediate},
    {kSlotSinkDepth, &FrozenLayerJob::m_pSinkMarkWork, Intermediate},
    {kSlotSinkDepth, &FrozenLayerJob::m_pSinkMarkTotal, Intermediate},
    {kSlotMaxVolumeShrinkage, &FrozenLayerJob::m_pMaxVolumeShrinkage, Flow},
    {kSlotAverageVelocityU, &FrozenLayerJob::m_pAverageVelocityU, Flow},
    {kSlotAverageVelocityV, &FrozenLayerJob::m_pAverageVelocityV, Flow},
    {kSlotAverageVelocityW, &FrozenLayerJob::m_pAverageVelocityW, Flow},
};

}  // namespace

}  // namespace qnl::profile

namespace qnl::profile {

ResultTargets::ResultTargets(const FrozenLayerJob& job) {
    static_assert(std::size(kRules) <= kMost);
    for (const Rule& rule : kRules) {
        double* array = (job.*rule.array).get();
        if (array != nullptr && rule.applies(job)) {
            targets_[count_++] = {rule.slot, array};
        }
    }
    if (Gas(job)) {
        skinThickness_ = job.m_pSkinThickness.get();
        wallThickness_ = job.m_pNodeThickness.get();
    }
}

}  // namespace qnl::profile
