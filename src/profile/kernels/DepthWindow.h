#pragma once

#include "base/OneBased.h"

namespace qnl::profile {

/// Depth to which the quantities of a window count, mm, for the geometric tolerance t of the mesh, mm: one
/// and a half times the nominal wall.
constexpr double DepthWindow(double t) {
    return 3.0 * t;
}

/// Number of points from the first one on that lie less than `reach` mm below it; none for a reach of 0. The
/// depths ascend.
inline int CountWithin(OneBased<const double> depths, double reach) {
    int count = 0;
    while (count < depths.Count() && depths[count + 1] - depths[1] < reach) {
        ++count;
    }
    return count;
}

}  // namespace qnl::profile
