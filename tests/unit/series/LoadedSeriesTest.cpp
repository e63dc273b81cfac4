#include "series/LoadedSeries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include "support_apps/SeriesFixture.h"

namespace {

using qnl::series::LoadedSeries;
using LoadedSeriesTest = SeriesFixture;

TEST_F(LoadedSeriesTest, TimesAreInTheirOwnOrderAsDecimalNumbers) {
    const LoadedSeries loaded = Load(0);
    ASSERT_EQ(loaded.series.times.size(), 3U);
    EXPECT_TRUE(loaded.series.realTimes);
    EXPECT_EQ(loaded.series.times[0].axis, 0.1);
    EXPECT_EQ(loaded.series.times[1].axis, 2.0);
    EXPECT_EQ(loaded.series.times[2].axis, 6.4);
    EXPECT_EQ(loaded.series.times[0].time.index, 2);
}

TEST_F(LoadedSeriesTest, ItemsStandBySurfaceNode) {
    const LoadedSeries loaded = Load(0);
    ASSERT_EQ(loaded.results.items.size(), 1U);
    const qnl::series::ItemOverTime& item = loaded.results.items[0];
    EXPECT_EQ(item.name, "Frozen ratio");
    EXPECT_EQ(item.unit, "%");
    for (std::size_t i = 0; i < loaded.surface.Nodes(); ++i) {
        const float x = loaded.surface.points[i][0];
        EXPECT_EQ(loaded.results.hasResult[0][i], x > 0.0F ? 1 : 0);
        EXPECT_TRUE(x > 0.0F ? item.values[1][i] == 20.0F + x : std::isnan(item.values[1][i]));
    }
}

TEST_F(LoadedSeriesTest, ProfilesAreSpreadOverTheOrder) {
    const LoadedSeries loaded = Load(6);
    const std::set<int> all(loaded.order.begin(), loaded.order.end());
    EXPECT_EQ(all.size(), loaded.surface.Nodes());
    const std::vector<int>& nodes = loaded.profiles.nodes;
    ASSERT_GE(nodes.size(), 6U);
    for (std::size_t k = 0; k < 6; ++k) {
        EXPECT_EQ(nodes[k], loaded.order[7 * k]);
    }
    for (const auto& region : loaded.regions.regions) {
        EXPECT_EQ(std::count(nodes.begin(), nodes.end(), region.node), 1) << "a region without a profile";
    }
    EXPECT_EQ(Load(1000).profiles.nodes.size(), 42U);
}

TEST_F(LoadedSeriesTest, AMissingStageFileLeavesOutTheHistory) {
    std::filesystem::remove(project.File("box1_001.k4f"));
    const LoadedSeries loaded = Load(5);
    EXPECT_FALSE(loaded.history);
    EXPECT_TRUE(loaded.profiles.nodes.empty());
    EXPECT_EQ(loaded.withoutHistory.find(project.File("box1_001.k4f") + " is missing"), 0U);
    EXPECT_EQ(loaded.series.times[2].axis, 3.0);
    EXPECT_EQ(loaded.series.times[2].time.index, 0);
}

}  // namespace
