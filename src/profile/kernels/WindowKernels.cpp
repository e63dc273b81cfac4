#include "profile/kernels/WindowKernels.h"

#include <algorithm>
#include <cmath>

#include "profile/kernels/DepthWindow.h"

namespace qnl::profile {

namespace {

double MaxOfFirst(OneBased<const double> values, int count, double start) {
    double largest = start;
    for (int i = 1; i <= count; ++i) {
        if (values[i] >= largest) {
            largest = values[i];
        }
    }
    return largest;
}

double Weight(OneBased<const double> depths, int i) {
    const int before = std::max(i - 1, 1);
    const int after = std::min(i + 1, depths.Count());
    return (depths[after] - depths[before]) / 2.0;
}

}  // namespace

}  // namespace qnl::profile

double MaxInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values, double window,
                   int& lastInWindow) {
    constexpr double kStart = -100.0;
    const int count = qnl::profile::CountWithin(depths, window);
    lastInWindow = std::max(count, 1);
    return qnl::profile::MaxOfFirst(values, count, kStart);
}

double MaxFromZeroInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                           double window) {
    return qnl::profile::MaxOfFirst(values, qnl::profile::CountWithin(depths, window), 0.0);
}

double AverageInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                       double window) {
    constexpr double kSmallest = 1e-16;
    const int count = qnl::profile::CountWithin(depths, window);
    double sum = 0.0;
    double weights = 0.0;
    for (int i = 1; i <= count; ++i) {
        const double weight = qnl::profile::Weight(depths, i);
        sum += weight * values[i];
        weights += weight;
    }
    return weights <= kSmallest ? sum : sum / weights;
}

double BulkAverageInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                           qnl::OneBased<const double> factors, double window) {
    constexpr double kSmallest = 1e-30;
    const int count = qnl::profile::CountWithin(depths, window);
    double sum = 0.0;
    double weights = 0.0;
    for (int i = 1; i <= count; ++i) {
        const double weight = qnl::profile::Weight(depths, i) * factors[i];
        sum += weight * values[i];
        weights += weight;
    }
    return weights <= kSmallest ? sum : sum / weights;
}

double MeanNonZeroInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                           double window) {
    constexpr double kZero = 1e-8;
    const int count = qnl::profile::CountWithin(depths, window);
    double sum = 0.0;
    int used = 0;
    for (int i = 1; i <= count; ++i) {
        if (std::abs(values[i]) > kZero) {
            sum += values[i];
            ++used;
        }
    }
    return used == 0 ? sum : sum / used;
}

namespace qnl::profile {

double ValueAtMiddle(OneBased<const double> depths, OneBased<const double> values, int last) {
    const double middle = depths[1] + (depths[last] - depths[1]) / 2.0;
    const int segments = std::min(last, depths.Count() - 1);
    for (int i = 1; i <= segments; ++i) {
        if (depths[i] <= middle && middle <= depths[i + 1]) {
            const double above = middle - depths[i];
            const double below = depths[i + 1] - middle;
            return values[i] + (values[i + 1] - values[i]) * above / (below + above);
        }
    }
    return 0.0;
}

}  // namespace qnl::profile
