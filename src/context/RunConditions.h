#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl {

/// What the presence flags say of a run; the tables of the evaluation ask by these names alone.
using RunCondition = bool (*)(const FrozenLayerJob&);

inline bool Always(const FrozenLayerJob& /*job*/) {
    return true;
}
inline bool Never(const FrozenLayerJob& /*job*/) {
    return false;
}
inline bool IsCool(const FrozenLayerJob& job) {
    return job.m_bHasCool == 1;
}
inline bool IsNotCool(const FrozenLayerJob& job) {
    return !IsCool(job);
}
inline bool HasGasAndIsNotCool(const FrozenLayerJob& job) {
    return IsNotCool(job) && job.m_bIsGasIn == 1;
}
inline bool HasFillCoolingTimeAndIsNotCool(const FrozenLayerJob& job) {
    return IsNotCool(job) && job.m_bFillHasCoolingTime == 1;
}
inline bool HasFlakesAndIsNotCool(const FrozenLayerJob& job) {
    return IsNotCool(job) && job.m_bIsFlakeLightIntensity == 1;
}
inline bool HasIntermediateTimes(const FrozenLayerJob& job) {
    return job.m_bHasIntermediateTimes == 1;
}
inline bool HasIntermediateTimesAndIsNotCool(const FrozenLayerJob& job) {
    return IsNotCool(job) && HasIntermediateTimes(job);
}
/// The run looks along smoothed normals.
inline bool SmoothsNormals(const FrozenLayerJob& job) {
    return HasIntermediateTimes(job) && job.m_options.Rules().smoothsNormals;
}
inline bool HasFlow(const FrozenLayerJob& job) {
    return job.m_bHasFlow == 1;
}
inline bool HasFlowAndIsNotCool(const FrozenLayerJob& job) {
    return IsNotCool(job) && HasFlow(job);
}

}  // namespace qnl
