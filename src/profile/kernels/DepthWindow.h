#pragma once

#include "base/OneBased.h"

namespace qnl::profile {

/// Number of points less than `reach` mm below the first one. As depths ascend, these are the points 1 to
/// that number.
inline int CountInWindow(OneBased<const double> depths, double reach) {
    int count = 0;
    while (count < depths.Count() && depths[count + 1] - depths[1] < reach) {
        ++count;
    }
    return count;
}

}  // namespace qnl::profile
