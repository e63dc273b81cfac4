#pragma once

#include "base/OneBased.h"

/// Reductions over the points of a profile that lie in the depth window: those less than `window` mm below
/// the first one. `depths` (mm, ascending) and the value arrays have the same count, at least 1.

/// Largest value in the window, not below -100; of equal values the deeper one. `lastInWindow` receives
/// the index of the last point in the window, 1 when there is none.
double MaxInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values, double window,
                   int& lastInWindow);

/// Largest value in the window, not below 0; of equal values the deeper one.
double MaxFromZeroInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                           double window);

/// Mean of the values in the window, each weighted by half the distance between its neighbours (half the
/// distance to its one neighbour at the ends); the weighted sum itself where the weights add up to 1e-16
/// or less. Needs two points.
double AverageInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values, double window);

/// As AverageInWindow with each weight multiplied by its entry in `factors`, and 1e-30 as the limit of the
/// weights. Needs two points.
double BulkAverageInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                           qnl::OneBased<const double> factors, double window);

/// Mean of the values in the window whose magnitude is above 1e-8; 0 when there is none.
double MeanNonZeroInWindow(qnl::OneBased<const double> depths, qnl::OneBased<const double> values,
                           double window);

namespace qnl::profile {

/// Value halfway between the first point and point `last`, linear within the segment around it. 0 when no
/// segment that begins at a point 1 to `last` holds that depth. Needs two points.
double ValueAtMiddle(OneBased<const double> depths, OneBased<const double> values, int last);

}  // namespace qnl::profile
