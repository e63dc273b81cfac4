#pragma once

#include <cstddef>
#include <vector>

#include "compare/Both.h"
#include "series/SeriesFiles.h"

namespace qnl::compare {

/// Which output times of two series belong together. Times are numbered from 0 within their series.
struct MatchedTimes {
    std::vector<Both<std::size_t>> pairs;  ///< in the order of A
    Both<std::vector<std::size_t>> alone;  ///< times that only one of them has
};

/// Matches times by their real times, equal within kSameTime, where both series know theirs; else by their
/// index. Two single times belong together whatever they are.
MatchedTimes MatchTimes(const series::SeriesFiles& a, const series::SeriesFiles& b);

/// Relative difference up to which real times are the same: they are stored in single precision, and summed
/// up in it by some programs.
inline constexpr double kSameTime = 1e-5;

}  // namespace qnl::compare
