#include "compare/MatchedTimes.h"

#include <gtest/gtest.h>

namespace {

using qnl::compare::Both;
using qnl::compare::MatchedTimes;
using qnl::compare::MatchTimes;
using Numbers = std::vector<std::size_t>;
using Pairs = std::vector<Both<std::size_t>>;

qnl::series::SeriesFiles RealTimes(const std::vector<double>& seconds) {
    qnl::series::SeriesFiles files;
    files.realTimes = true;
    for (std::size_t i = 0; i < seconds.size(); ++i) {
        files.times.push_back({{static_cast<int>(i), seconds[i]}, "", "", seconds[i]});
    }
    return files;
}

qnl::series::SeriesFiles Indices(const std::vector<int>& indices) {
    qnl::series::SeriesFiles files;
    for (const int index : indices) {
        files.times.push_back({{index, std::nullopt}, "", "", 0.0});
    }
    return files;
}

TEST(MatchTimes, ByRealTimeWhereBothKnowTheirs) {
    const MatchedTimes matched = MatchTimes(RealTimes({0.5, 1.0, 6.4}), RealTimes({1.0, 2.0, 6.4}));
    EXPECT_EQ(matched.pairs, (Pairs{{1, 0}, {2, 2}}));
    EXPECT_EQ(matched.alone[0], Numbers{0});
    EXPECT_EQ(matched.alone[1], Numbers{1});
}

TEST(MatchTimes, RealTimesAreTheSameWithinRounding) {
    EXPECT_EQ(MatchTimes(RealTimes({0.0, 6.4}), RealTimes({0.0, 6.40003})).pairs.size(), 2U);
    EXPECT_EQ(MatchTimes(RealTimes({0.0, 6.4}), RealTimes({0.0, 6.4001})).pairs.size(), 1U);
}

TEST(MatchTimes, ByIndexWhereOneDoesNot) {
    const MatchedTimes matched = MatchTimes(Indices({1, 2, 0}), RealTimes({8.0, 9.0}));
    EXPECT_EQ(matched.pairs, (Pairs{{0, 1}, {2, 0}}));
    EXPECT_EQ(matched.alone[0], Numbers{1});
    EXPECT_TRUE(matched.alone[1].empty());
}

TEST(MatchTimes, EveryTimeBelongsToOneOther) {
    const MatchedTimes matched = MatchTimes(RealTimes({2.0, 3.0}), RealTimes({2.0, 2.0}));
    EXPECT_EQ(matched.pairs, (Pairs{{0, 0}}));
    EXPECT_EQ(matched.alone[0], Numbers{1});
    EXPECT_EQ(matched.alone[1], Numbers{1});
    EXPECT_EQ(MatchTimes(RealTimes({2.0, 2.0}), RealTimes({2.0, 3.0})).pairs, (Pairs{{0, 0}}));
}

TEST(MatchTimes, TwoSingleTimesBelongTogether) {
    EXPECT_EQ(MatchTimes(RealTimes({1.0}), RealTimes({2.0})).pairs, (Pairs{{0, 0}}));
    EXPECT_EQ(MatchTimes(Indices({1}), Indices({2})).pairs, (Pairs{{0, 0}}));
    EXPECT_TRUE(MatchTimes(RealTimes({1.0}), RealTimes({2.0, 3.0})).pairs.empty());
}

}  // namespace
