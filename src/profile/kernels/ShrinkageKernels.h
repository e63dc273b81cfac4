#pragma once

#include "base/OneBased.h"

/// Depth by which the outer layer sinks, mm: its linear shrinkage 1 - (1 - x)^(1/3), x the volume
/// shrinkage, summed over the segments that end less than the smaller of 2t and 4 mm below the first
/// element. Shrinkage of 0 or less adds nothing; x above 1 is taken as 1 and sets `beyondWhole`, which is
/// left alone otherwise. 0 for fewer than two elements.
///
/// `depths` (mm, ascending) and `shrinkage` (volume, percent) of the elements have the same count.
double CalcuSinkDepth(qnl::OneBased<const double> depths, qnl::OneBased<const double> shrinkage, double t,
                      bool& beyondWhole);

/// 0.3 where the volume shrinkage is largest near the wall, so that it shows as a sink mark, else 0. Near
/// is the outer 35 percent of the profile; segments that begin with 95 percent of the largest shrinkage or
/// more count as largest, and one near the wall is enough. Where only the last element is that large it
/// shows, too. `maxShrinkage` is the largest volume shrinkage of the run, percent: a profile that stays at a
/// third of it or below (1 % at most) gives 0. The profile counts to a depth of 5t. Needs one element.
double CalcuShrinkLocation(qnl::OneBased<const double> depths, qnl::OneBased<const double> shrinkage,
                           double t, double maxShrinkage);
