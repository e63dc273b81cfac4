#include "profile/kernels/FrozenKernels.h"

#include <algorithm>

#include "profile/kernels/SegmentLengths.h"

namespace qnl::profile {

namespace {

constexpr double kShortest = 1e-10;

}  // namespace

}  // namespace qnl::profile

double CalcuFrozenRatio(qnl::OneBased<const double> depths, qnl::OneBased<const double> temperatures,
                        double freezeTemperature, double window) {
    const int count = depths.Count();
    if (count < 2) {
        return 100.0;
    }
    double frozen = 0.0;
    for (int i = 1; i < count; ++i) {
        frozen += qnl::profile::FrozenLength(depths[i + 1] - depths[i], temperatures[i], temperatures[i + 1],
                                             freezeTemperature);
    }
    frozen = std::min(frozen, window);
    const double length = std::min(depths[count] - depths[1], window);
    return length <= qnl::profile::kShortest ? 100.0 : 100.0 * frozen / length;
}

double CalcuFrozenRatioInPolymer(qnl::OneBased<const double> depths, qnl::OneBased<const double> temperatures,
                                 qnl::OneBased<const double> gasMarkers, double freezeTemperature,
                                 double window) {
    double frozen = 0.0;
    double polymer = 0.0;
    for (int i = 1; i < depths.Count(); ++i) {
        const bool firstPolymer = qnl::profile::IsPolymer(gasMarkers[i]);
        const bool secondPolymer = qnl::profile::IsPolymer(gasMarkers[i + 1]);
        if (!firstPolymer && !secondPolymer) {
            continue;
        }
        const double length = depths[i + 1] - depths[i];
        polymer += qnl::profile::PolymerLength(length, gasMarkers[i], gasMarkers[i + 1]);
        frozen += qnl::profile::FrozenLength(length, temperatures[i], temperatures[i + 1], freezeTemperature);
    }
    const double cappedPolymer = std::min(polymer, window);
    if (cappedPolymer <= qnl::profile::kShortest) {
        return 100.0;
    }
    return 100.0 * std::min(std::min(frozen, window) / cappedPolymer, 1.0);
}
