#pragma once

#include "base/OneBased.h"

/// Polymer share of the profile, percent: the polymer length by the length of the profile, both capped at
/// the window. 100 for fewer than two elements and for a profile of 1e-10 mm or less.
///
/// `depths` (mm, ascending) and `gasMarkers` of the elements have the same count.
double CalcuSkinRatio(qnl::OneBased<const double> depths, qnl::OneBased<const double> gasMarkers,
                      double window);

/// Polymer length from the first element down to the first one in gas, mm, not capped. 0 for fewer than
/// two elements.
double CalcuSkinThickness(qnl::OneBased<const double> depths, qnl::OneBased<const double> gasMarkers);
