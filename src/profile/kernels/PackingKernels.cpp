#include "profile/kernels/PackingKernels.h"

#include <algorithm>

#include "profile/kernels/SegmentLengths.h"

namespace qnl::profile {

namespace {

/// `endsAt(j)` tells whether the sum ends with the segment that ends at element j.
template <typename EndsAt>
double PackingIndex(const PackingProfile& profile, const PackingLimits& limits, EndsAt endsAt) {
    constexpr double kShortest = 1e-8;
    constexpr double kBelowFreeze = 20.0;
    const auto& [depths, temperatures, densities] = profile;
    const int count = depths.Count();
    if (count < 2) {
        return 0.0;
    }
    const double length = std::min(depths[count] - depths[1], 5.0 * limits.t);
    if (length < kShortest) {
        return 0.0;
    }
    const double meltLimit = limits.freezeTemperature - kBelowFreeze;
    double melt = 0.0;
    double mass = 0.0;
    for (int j = 1; j < count && depths[j + 1] - depths[1] < limits.window; ++j) {
        const double hot =
            HotLength(depths[j + 1] - depths[j], temperatures[j], temperatures[j + 1], meltLimit);
        melt += hot;
        mass += hot * (densities[j] + densities[j + 1]) / 2.0;
        if (endsAt(j + 1)) {
            break;
        }
    }
    return (limits.freezeDensity * melt - mass) / (limits.freezeDensity * length);
}

}  // namespace

}  // namespace qnl::profile

double CalcuPackingIndex(const qnl::profile::PackingProfile& profile,
                         const qnl::profile::PackingLimits& limits) {
    return qnl::profile::PackingIndex(profile, limits, [](int) { return false; });
}

double CalcuPackingIndexToGas(const qnl::profile::PackingProfile& profile,
                              qnl::OneBased<const double> gasMarkers,
                              const qnl::profile::PackingLimits& limits) {
    return qnl::profile::PackingIndex(profile, limits,
                                      [&](int j) { return qnl::profile::IsGas(gasMarkers[j]); });
}
