#include "profile/ProfileInputs.h"

#include <cstddef>

#include "profile/JobViews.h"

namespace qnl::profile {

namespace {

constexpr int kAnalysisWithoutGasItems = 8;

template <typename Value, std::size_t Components>
auto ByCell(const FrozenLayerJob& job, const OwnedArray<Value> (&arrays)[Components]) {
    std::array<OneBased<const Value, CellId>, Components> views;
    for (std::size_t k = 0; k < Components; ++k) {
        views[k] = {arrays[k].get(), job.m_nCells};
    }
    return views;
}

}  // namespace

StageTraits TraitsOf(const FrozenLayerJob& job) {
    StageTraits stage{};
    stage.warp = job.m_bHasWarp != 0;
    stage.cool = job.m_bHasCool != 0;
    stage.gas = job.m_bIsGasIn != 0;
    stage.gasInCool = job.m_bGasInCool != 0;
    stage.gasRestricts = job.m_nAnalysisType != kAnalysisWithoutGasItems;
    stage.intermediateTimes = job.m_bHasIntermediateTimes != 0;
    stage.fillCoolingTime = job.m_bFillHasCoolingTime != 0;
    stage.flakes = job.m_bIsFlakeLightIntensity != 0;
    stage.flow = job.m_bHasFlow != 0;
    return stage;
}

ProfileInputs InputsOf(const FrozenLayerJob& job) {
    return {TraitsOf(job),
            MediumOf(job),
            FieldOf(job, kVolumeShrinkage),
            FieldOf(job, kGasMarker),
            FieldOf(job, kSpeed),
            FieldOf(job, kCoolingTime),
            FieldOf(job, kDensity),
            ByCell(job, job.m_pCellVector),
            ByCell(job, job.m_pCellFiber),
            job.m_dFreezeTemp,
            job.m_dFreezeDensity,
            job.m_dGeomTolerance,
            job.m_dMaxValue,
            job.m_nLogLevel > 1};
}

}  // namespace qnl::profile
