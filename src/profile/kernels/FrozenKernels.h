#pragma once

#include "base/OneBased.h"

/// Frozen share of the profile, percent: the length below the freeze temperature by the length of the
/// profile, both capped at the window. 100 for fewer than two samples and for a profile of 1e-10 mm or
/// less.
///
/// `depths` (mm, ascending) and `temperatures` (degC) of the samples have the same count.
double CalcuFrozenRatio(qnl::OneBased<const double> depths, qnl::OneBased<const double> temperatures,
                        double freezeTemperature, double window);

/// Frozen share of the polymer in the profile, percent, 100 at most; `gasMarkers` by sample. A segment
/// with one polymer end counts with half its length as polymer and with its full frozen length as frozen.
/// 100 for fewer than two samples and for a polymer length of 1e-10 mm or less.
double CalcuFrozenRatioInPolymer(qnl::OneBased<const double> depths, qnl::OneBased<const double> temperatures,
                                 qnl::OneBased<const double> gasMarkers, double freezeTemperature,
                                 double window);
