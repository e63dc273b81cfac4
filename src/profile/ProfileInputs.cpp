#include "profile/ProfileInputs.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "profile/JobViews.h"

namespace qnl::profile {

namespace {

template <typename Value, std::size_t Components>
auto ByCell(const FrozenLayerJob& job, const OwnedArray<Value> (&arrays)[Components]) {
    std::array<OneBased<const Value, CellId>, Components> views;
    std::transform(std::begin(arrays), std::end(arrays), views.begin(), [&](const OwnedArray<Value>& array) {
        return OneBased<const Value, CellId>(array.get(), job.m_nCells);
    });
    return views;
}

}  // namespace

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
