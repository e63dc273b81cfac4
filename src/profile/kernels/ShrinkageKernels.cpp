#include "profile/kernels/ShrinkageKernels.h"

#include <algorithm>
#include <cmath>

#include "profile/kernels/DepthWindow.h"

namespace qnl::profile {

namespace {

constexpr double kShows = 0.3;
constexpr double kHidden = 0.0;

/// Depths between which the segments with nearly the largest shrinkage lie, mm, counted as those of the
/// profile are; low is above high without any.
struct DepthRange {
    double low = 1e8;
    double high = -1e8;
};

double LargestOfFirst(OneBased<const double> values, int count) {
    double largest = -1e8;
    for (int i = 1; i <= count; ++i) {
        largest = std::max(largest, values[i]);
    }
    return largest;
}

/// Range of the middles of the segments that begin among the first `count` elements with a shrinkage of
/// `threshold` or more.
DepthRange RangeOfMiddles(OneBased<const double> depths, OneBased<const double> shrinkage, int count,
                          double threshold) {
    DepthRange range;
    for (int j = 1; j <= std::min(count, depths.Count() - 1); ++j) {
        if (shrinkage[j] >= threshold) {
            const double middle = (depths[j] + depths[j + 1]) / 2.0;
            range.high = std::max(range.high, middle);
            range.low = std::min(range.low, middle);
        }
    }
    return range;
}

}  // namespace

}  // namespace qnl::profile

double CalcuSinkDepth(qnl::OneBased<const double> depths, qnl::OneBased<const double> shrinkage, double t,
                      bool& beyondWhole) {
    constexpr double kDeepest = 4.0;
    constexpr double kFromPercent = 0.01;
    const double limit = std::min(2.0 * t, kDeepest);
    double sink = 0.0;
    for (int j = 1; j < depths.Count() && depths[j + 1] - depths[1] < limit; ++j) {
        double x = (shrinkage[j] + shrinkage[j + 1]) / 2.0 * kFromPercent;
        if (x > 1.0) {
            x = 1.0;
            beyondWhole = true;
        }
        if (x > 0.0) {
            sink += (1.0 - std::pow(1.0 - x, 1.0 / 3.0)) * (depths[j + 1] - depths[j]);
        }
    }
    return sink;
}

double CalcuShrinkLocation(qnl::OneBased<const double> depths, qnl::OneBased<const double> shrinkage,
                           double t, double maxShrinkage) {
    constexpr double kShareOfMax = 0.33;
    constexpr double kNearlyLargest = 0.95;
    constexpr double kNear = 0.35;
    const double first = depths[1];
    const double reach = 5.0 * t;
    const double length = std::min(depths[depths.Count()] - first, reach);
    const int count = qnl::profile::CountWithin(depths, reach);
    const double largest = qnl::profile::LargestOfFirst(shrinkage, count);
    if (std::clamp(kShareOfMax * maxShrinkage, 0.0, 1.0) >= largest) {
        return qnl::profile::kHidden;
    }
    const qnl::profile::DepthRange range =
        qnl::profile::RangeOfMiddles(depths, shrinkage, count, kNearlyLargest * largest);
    const double low = (range.low - first) / length;
    const double high = (range.high - first) / length;
    return low > kNear && high > kNear ? qnl::profile::kHidden : qnl::profile::kShows;
}
