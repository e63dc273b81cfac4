#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace qnl::interop {

/// For each point the nearest of the rows within `tolerance` of it, the first of several as near; -1 where
/// there is none. All coordinates of rows are finite.
std::vector<std::int64_t> MatchPlaces(const std::vector<std::array<double, 3>>& points,
                                      const std::vector<std::array<double, 3>>& rows, double tolerance);

}  // namespace qnl::interop
