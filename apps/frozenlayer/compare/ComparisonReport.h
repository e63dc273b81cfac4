#pragma once

#include <optional>
#include <ostream>

#include "compare/SeriesDifference.h"

namespace qnl::compare {

/// Prints what is compared, one table of the differences an output time, and a closing line that says whether
/// both are equal to the bit, or within what; with a tolerance also whether they are within it.
void PrintComparison(const Both<ComparedSeries>& sides, const SeriesDifference& difference,
                     std::optional<double> tolerance, std::ostream& out);

}  // namespace qnl::compare
