#include "compare/SeriesDifference.h"

#include <gtest/gtest.h>

#include "ComparisonSample.h"
#include "support_apps/Refusal.h"

namespace {

using qnl::compare::CompareSeries;
using qnl::compare::SeriesDifference;
using qnl::compare::TimeDifference;

struct SeriesDifferenceTest : testing::Test, ComparisonSample {};

TEST_F(SeriesDifferenceTest, TheSameResultTwiceIsEqual) {
    const SeriesDifference difference = CompareSeries(sides);
    EXPECT_TRUE(difference.IsEqual());
    EXPECT_TRUE(difference.IsWithin(0.0));
    ASSERT_EQ(difference.times.size(), 2U);
    EXPECT_EQ(difference.times[1].nodes, 3U);
    EXPECT_EQ(difference.times[1].items.size(), 2U);
}

TEST_F(SeriesDifferenceTest, ValuesOfTheMatchingTimeAreCompared) {
    sides[1].files.times[0].axis = 0.5;
    sides[1].results.items[0].values[1] = {40.0F, 47.0F, 61.0F};
    const SeriesDifference difference = CompareSeries(sides);
    ASSERT_EQ(difference.times.size(), 1U);
    const qnl::compare::ItemDifference& item = difference.times[0].items.at(0);
    EXPECT_EQ(item.values.largest, -3.0);
    EXPECT_EQ(item.values.place, 1U);
    EXPECT_EQ(difference.timesOfOne[0], std::vector<std::size_t>{0});
    EXPECT_EQ(difference.timesOfOne[1], std::vector<std::size_t>{0});
    EXPECT_FALSE(difference.IsWithin(5.0));
}

TEST_F(SeriesDifferenceTest, NodesOfOneAreNamedAndNotCompared) {
    sides[0].results.hasResult[0] = {1, 1, 0};
    sides[1].results.hasResult[0] = {0, 1, 1};
    sides[1].results.items[0].values[0] = {kNothing, 20.5F, 99.0F};
    const SeriesDifference difference = CompareSeries(sides);
    const TimeDifference& time = difference.times.at(0);
    EXPECT_EQ(time.nodes, 1U);
    EXPECT_EQ(time.nodesOfOne[0], std::vector<int>{11});
    EXPECT_EQ(time.nodesOfOne[1], std::vector<int>{13});
    EXPECT_EQ(time.items.at(0).values.largest, 0.5);
    EXPECT_TRUE(difference.IsOneSided());
    EXPECT_FALSE(difference.IsWithin(1.0));
}

TEST_F(SeriesDifferenceTest, ANodeThatNeitherNamesIsNoDifference) {
    for (auto& side : sides) {
        side.results.hasResult[0] = {1, 1, 0};
    }
    sides[1].results.items[0].values[0][2] = kNothing;
    const SeriesDifference difference = CompareSeries(sides);
    EXPECT_EQ(difference.times.at(0).nodes, 2U);
    EXPECT_TRUE(difference.IsEqual());
}

TEST_F(SeriesDifferenceTest, ItemsOfOneAreNamed) {
    sides[0].results.items[1].values[0].clear();
    sides[1].results.items[0].name = "Sink-mark displacement";
    const SeriesDifference difference = CompareSeries(sides);
    EXPECT_EQ(difference.times.at(0).itemsOfOne[0], std::vector<std::string>{"Frozen ratio"});
    EXPECT_EQ(difference.times.at(0).itemsOfOne[1],
              (std::vector<std::string>{"Sink-mark displacement", "Packing index"}));
    EXPECT_TRUE(difference.times.at(0).items.empty());
    EXPECT_EQ(difference.times.at(1).items.size(), 1U);
    EXPECT_TRUE(difference.IsOneSided());
    EXPECT_FALSE(difference.IsEqual());
}

TEST_F(SeriesDifferenceTest, TheToleranceItselfIsWithin) {
    sides[1].results.items[0].values[1][2] = 62.0F;
    const SeriesDifference difference = CompareSeries(sides);
    EXPECT_TRUE(difference.IsWithin(2.0));
    EXPECT_FALSE(difference.IsWithin(1.999));
    EXPECT_FALSE(difference.IsEqual());
}

TEST_F(SeriesDifferenceTest, AValueThatIsNoNumberInOneIsNotWithinAnyTolerance) {
    sides[1].results.items[0].values[1][2] = kNothing;
    EXPECT_FALSE(CompareSeries(sides).IsWithin(1e9));
    sides[0].results.items[0].values[1][2] = kNothing;
    EXPECT_TRUE(CompareSeries(sides).IsWithin(0.0));
}

TEST_F(SeriesDifferenceTest, WithoutACommonTimeNothingIsCompared) {
    sides[1].files.times[0].axis = 5.0;
    sides[1].files.times[1].axis = 6.0;
    EXPECT_EQ(
        Refusal([&] { CompareSeries(sides); }),
        "A and B have no output time in common; to compare two different times, name their result files, "
        "such as part1_001.fzr and part1_002.fzr");
}

}  // namespace
