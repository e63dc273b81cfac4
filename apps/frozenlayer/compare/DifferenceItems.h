#pragma once

#include "compare/SeriesDifference.h"

namespace qnl::compare {

/// What the numbers of items that hold differences begin behind: that of item 3 is 1003.
inline constexpr int kDifferenceItems = 1000;

/// Adds an item "Difference: <name>" for every item that both have, B minus A by time of A and by surface
/// node; not a number where one of both has no number, empty at a time that only A has. `results` are those
/// of the same series and surface as sides[0].
void AddDifferenceItems(const Both<ComparedSeries>& sides, const SeriesDifference& difference,
                        series::SurfaceResults& results);

}  // namespace qnl::compare
