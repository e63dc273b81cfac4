#pragma once

#include <string>

#include "compare/SeriesDifference.h"

namespace qnl::compare {

/// Writes one row an item and output time that both have: times, item, unit, the numbers of the report to
/// all their digits, and how many nodes stand in one of them only. A file of that name is replaced. False,
/// with a fault recorded, when it cannot be written.
[[nodiscard]] bool WriteComparisonTable(const std::string& path, const Both<ComparedSeries>& sides,
                                        const SeriesDifference& difference);

}  // namespace qnl::compare
