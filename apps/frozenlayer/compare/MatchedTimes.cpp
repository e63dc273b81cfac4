#include "compare/MatchedTimes.h"

#include <algorithm>
#include <cmath>

namespace qnl::compare {

namespace {

bool NearlyEqual(double a, double b) {
    return std::fabs(a - b) <= kSameTime * std::max(std::fabs(a), std::fabs(b));
}

/// Numbers of the times that `taken` does not mark.
std::vector<std::size_t> LeftOver(const std::vector<char>& taken) {
    std::vector<std::size_t> left;
    for (std::size_t t = 0; t < taken.size(); ++t) {
        if (taken[t] == 0) {
            left.push_back(t);
        }
    }
    return left;
}

}  // namespace

MatchedTimes MatchTimes(const series::SeriesFiles& a, const series::SeriesFiles& b) {
    MatchedTimes matched;
    if (a.times.size() == 1 && b.times.size() == 1) {
        matched.pairs.push_back({0, 0});
        return matched;
    }
    const bool byRealTime = a.realTimes && b.realTimes;
    Both<std::vector<char>> taken{std::vector<char>(a.times.size()), std::vector<char>(b.times.size())};
    for (std::size_t t = 0; t < a.times.size(); ++t) {
        for (std::size_t u = 0; u < b.times.size(); ++u) {
            const bool same = byRealTime ? NearlyEqual(a.times[t].axis, b.times[u].axis)
                                         : a.times[t].time.index == b.times[u].time.index;
            if (same && taken[0][t] == 0 && taken[1][u] == 0) {
                matched.pairs.push_back({t, u});
                taken[0][t] = taken[1][u] = 1;
            }
        }
    }
    matched.alone = {LeftOver(taken[0]), LeftOver(taken[1])};
    return matched;
}

}  // namespace qnl::compare
