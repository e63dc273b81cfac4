#include "profile/FrozenKernels.h"

#include <algorithm>

#include "profile/SegmentLengths.h"

namespace {

constexpr double kShortest = 1e-10;

}  // namespace

double CalcuFrozenRatio(OneBased<const double> depths, OneBased<const double> temperatures,
                        double freezeTemperature, double window) {
    const int count = depths.Count();
    if (count < 2) {
        return 100.0;
    }
    double frozen = 0.0;
    for (int i = 1; i < count; ++i) {
        frozen += qnl::FrozenLength(depths[i + 1] - depths[i], temperatures[i], temperatures[i + 1],
                                    freezeTemperature);
    }
    frozen = std::min(frozen, window);
    const double length = std::min(depths[count] - depths[1], window);
    return length <= kShortest ? 100.0 : 100.0 * frozen / length;
}

double CalcuFrozenRatioInPolymer(OneBased<const double> depths, OneBased<const double> temperatures,
                                 OneBased<const double> gasMarkers, double freezeTemperature, double window) {
    const int count = depths.Count();
    if (count < 2) {
        return 100.0;
    }
    double frozen = 0.0;
    double polymer = 0.0;
    for (int i = 1; i < count; ++i) {
        const bool firstPolymer = qnl::IsPolymer(gasMarkers[i]);
        const bool secondPolymer = qnl::IsPolymer(gasMarkers[i + 1]);
        if (!firstPolymer && !secondPolymer) {
            continue;
        }
        const double length = depths[i + 1] - depths[i];
        polymer += qnl::PolymerLength(length, gasMarkers[i], gasMarkers[i + 1]);
        frozen += qnl::FrozenLength(length, temperatures[i], temperatures[i + 1], freezeTemperature);
    }
    const double cappedPolymer = std::min(polymer, window);
    if (cappedPolymer <= kShortest) {
        return 100.0;
    }
    const double ratio = std::min(frozen, window) / cappedPolymer;
    return ratio > 1.0 ? 100.0 : 100.0 * ratio;
}
