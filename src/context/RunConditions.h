#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl {

/// What the presence flags say of a run.
struct RunTraits {
    bool warp;
    bool cool;
    bool gas;
    bool gasInCool;
    bool gasRestricts;  ///< gas restricts the frozen ratio and the packing index, too
    bool intermediateTimes;
    bool fillCoolingTime;
    bool flakes;
    bool flow;
};

inline RunTraits TraitsOf(const FrozenLayerJob& job) {
    constexpr int kAnalysisWithoutGasItems = 8;
    RunTraits run{};
    run.warp = job.m_bHasWarp == 1;
    run.cool = job.m_bHasCool == 1;
    run.gas = job.m_bIsGasIn == 1;
    run.gasInCool = job.m_bGasInCool == 1;
    run.gasRestricts = job.m_nAnalysisType != kAnalysisWithoutGasItems;
    run.intermediateTimes = job.m_bHasIntermediateTimes == 1;
    run.fillCoolingTime = job.m_bFillHasCoolingTime == 1;
    run.flakes = job.m_bIsFlakeLightIntensity == 1;
    run.flow = job.m_bHasFlow == 1;
    return run;
}

/// The tables of the evaluation ask for what a run has by these names alone.
using RunCondition = bool (*)(const RunTraits&);

inline bool Always(const RunTraits& /*run*/) {
    return true;
}
inline bool Never(const RunTraits& /*run*/) {
    return false;
}
inline bool IsCool(const RunTraits& run) {
    return run.cool;
}
inline bool IsNotCool(const RunTraits& run) {
    return !run.cool;
}
inline bool HasGasAndIsNotCool(const RunTraits& run) {
    return !run.cool && run.gas;
}
inline bool HasFillCoolingTimeAndIsNotCool(const RunTraits& run) {
    return !run.cool && run.fillCoolingTime;
}
inline bool HasFlakesAndIsNotCool(const RunTraits& run) {
    return !run.cool && run.flakes;
}
inline bool HasIntermediateTimes(const RunTraits& run) {
    return run.intermediateTimes;
}
inline bool HasIntermediateTimesAndIsNotCool(const RunTraits& run) {
    return !run.cool && run.intermediateTimes;
}
inline bool HasFlow(const RunTraits& run) {
    return run.flow;
}
inline bool HasFlowAndIsNotCool(const RunTraits& run) {
    return !run.cool && run.flow;
}

inline bool HasIntermediateTimes(const FrozenLayerJob& job) {
    return TraitsOf(job).intermediateTimes;
}
/// The run looks along smoothed normals.
inline bool SmoothsNormals(const FrozenLayerJob& job) {
    return HasIntermediateTimes(job) && job.m_options.Rules().smoothsNormals;
}
inline bool HasFlow(const FrozenLayerJob& job) {
    return TraitsOf(job).flow;
}

}  // namespace qnl
