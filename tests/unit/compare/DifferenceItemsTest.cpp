#include "compare/DifferenceItems.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ComparisonSample.h"

namespace {

struct DifferenceItemsTest : testing::Test, ComparisonSample {
    /// The items that are added to none.
    std::vector<qnl::series::ItemOverTime> Added() const {
        qnl::series::SurfaceResults results;
        qnl::compare::AddDifferenceItems(sides, qnl::compare::CompareSeries(sides), results);
        return results.items;
    }
};

TEST_F(DifferenceItemsTest, HoldWhatBHasMoreThanA) {
    sides[1].results.items[0].values[0] = {13.0F, kNothing, 29.5F};
    const std::vector<qnl::series::ItemOverTime> items = Added();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].id, 1001);
    EXPECT_EQ(items[0].name, "Difference: Frozen ratio");
    EXPECT_EQ(items[0].unit, "%");
    ASSERT_EQ(items[0].values.size(), 2U);
    EXPECT_EQ(items[0].values[0][0], 3.0F);
    EXPECT_TRUE(std::isnan(items[0].values[0][1]));
    EXPECT_EQ(items[0].values[0][2], -0.5F);
    EXPECT_EQ(items[0].values[1], (std::vector<float>{0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(items[1].id, 1011);
}

TEST_F(DifferenceItemsTest, StandAtTheTimesOfA) {
    sides[1].files.times.erase(sides[1].files.times.begin());
    sides[1].files.times.push_back({{2, 3.0}, "", "", 3.0});
    for (qnl::series::ItemOverTime& item : sides[1].results.items) {
        item.values = {item.values[1], item.values[0]};
    }
    sides[1].results.items[0].values[0][2] = 61.0F;
    const std::vector<qnl::series::ItemOverTime> items = Added();
    EXPECT_TRUE(items.at(0).values.at(0).empty());
    EXPECT_EQ(items.at(0).values.at(1), (std::vector<float>{0.0F, 0.0F, 1.0F}));
}

TEST_F(DifferenceItemsTest, AnItemOfOneHasNoDifferences) {
    sides[1].results.items.pop_back();
    const std::vector<qnl::series::ItemOverTime> items = Added();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].id, 1001);
}

}  // namespace
