#pragma once

#include <algorithm>
#include <cmath>

namespace qnl::profile {

/// Gas markers below this mark polymer.
constexpr double kPolymerBelow = -0.1;
/// Gas markers above this mark gas.
constexpr double kGasAbove = 0.1;

inline bool IsPolymer(double gasMarker) {
    return gasMarker < kPolymerBelow;
}

inline bool IsGas(double gasMarker) {
    return gasMarker > kGasAbove;
}

/// Part of a segment of this length, mm, that is below the temperature limit, with temperatures linear
/// from `first` to `second`. A temperature at the limit is not below it.
inline double FrozenLength(double length, double first, double second, double limit) {
    const bool firstBelow = first < limit;
    const bool secondBelow = second < limit;
    if (firstBelow && secondBelow) {
        return length;
    }
    if (firstBelow == secondBelow) {
        return 0.0;
    }
    return std::abs((std::min(first, second) - limit) / (second - first)) * length;
}

/// Part of a segment of this length, mm, that is above the temperature limit, with temperatures linear
/// from `first` to `second`. A segment from the limit upwards counts as 0.
inline double HotLength(double length, double first, double second, double limit) {
    if (first > limit && second > limit) {
        return length;
    }
    const bool crosses = (first < limit && second >= limit) || (second < limit && first >= limit);
    return crosses ? std::abs((std::max(first, second) - limit) / (second - first)) * length : 0.0;
}

/// Part of a segment of this length, mm, that is polymer by the gas markers of its ends.
inline double PolymerLength(double length, double firstMarker, double secondMarker) {
    const bool firstPolymer = IsPolymer(firstMarker);
    const bool secondPolymer = IsPolymer(secondMarker);
    if (firstPolymer && secondPolymer) {
        return length;
    }
    return firstPolymer == secondPolymer ? 0.0 : length / 2.0;
}

}  // namespace qnl::profile
