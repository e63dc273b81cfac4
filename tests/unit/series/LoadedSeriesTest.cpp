#include "series/SeriesResults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <set>

#include "BoxProject.h"
#include "exports/ExportFrames.h"
#include "page/ReportItems.h"

namespace {

using qnl::kernel::Point;
using qnl::series::SeriesResults;

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

/// Cubes that stay above freezing in the last quarter of x; results everywhere but at x = 0.
struct SeriesTest : testing::Test {
    SeriesTest() {
        AddTime(1, 2.0F, 20.0);
        AddTime(2, 0.1F, 40.0);
        AddTime(0, 6.4F, 0.0);
    }
    void AddTime(int index, float seconds, double offset) const {
        project.AddTime(
            index, seconds, [&](const Point& place) { return 100.0 + offset + 10.0 * place[0]; },
            [&](const Point& place) {
                return OnSurfaceOfCubes(place) && place[0] > 0.0 ? offset + place[0] : kNothing;
            });
    }
    SeriesResults Load(std::size_t profiles) const {
        return qnl::series::LoadSeriesResults(project.Words(), profiles);
    }

    BoxProject project{Cubes()};
};

TEST_F(SeriesTest, TimesAreInTheirOwnOrderAsDecimalNumbers) {
    const SeriesResults loaded = Load(0);
    ASSERT_EQ(loaded.series.times.size(), 3U);
    EXPECT_TRUE(loaded.series.realTimes);
    EXPECT_EQ(loaded.series.times[0].axis, 0.1);
    EXPECT_EQ(loaded.series.times[1].axis, 2.0);
    EXPECT_EQ(loaded.series.times[2].axis, 6.4);
    EXPECT_EQ(loaded.series.times[0].time.index, 2);
}

TEST_F(SeriesTest, ItemsStandBySurfaceNode) {
    const SeriesResults loaded = Load(0);
    ASSERT_EQ(loaded.results.items.size(), 1U);
    const qnl::series::SeriesItem& item = loaded.results.items[0];
    EXPECT_EQ(item.name, "Frozen ratio");
    EXPECT_EQ(item.unit, "%");
    for (std::size_t i = 0; i < loaded.surface.Nodes(); ++i) {
        const float x = loaded.surface.points[i][0];
        EXPECT_EQ(loaded.results.hasResult[0][i], x > 0.0F ? 1 : 0);
        EXPECT_TRUE(x > 0.0F ? item.values[1][i] == 20.0F + x : std::isnan(item.values[1][i]));
    }
}

TEST_F(SeriesTest, ProfilesAreSpreadOverTheOrder) {
    const SeriesResults loaded = Load(6);
    const std::set<int> all(loaded.order.begin(), loaded.order.end());
    EXPECT_EQ(all.size(), loaded.surface.Nodes());
    ASSERT_EQ(loaded.profiles.nodes.size(), 6U);
    for (std::size_t k = 0; k < 6; ++k) {
        EXPECT_EQ(loaded.profiles.nodes[k], loaded.order[7 * k]);
    }
    EXPECT_EQ(Load(1000).profiles.nodes.size(), 42U);
}

TEST_F(SeriesTest, AMissingStageFileLeavesOutTheHistory) {
    std::filesystem::remove(project.File("box1_001.k4f"));
    const SeriesResults loaded = Load(5);
    EXPECT_FALSE(loaded.history);
    EXPECT_TRUE(loaded.profiles.nodes.empty());
    EXPECT_EQ(loaded.withoutHistory.find(project.File("box1_001.k4f") + " is missing"), 0U);
    EXPECT_EQ(loaded.series.times[2].axis, 3.0);
    EXPECT_EQ(loaded.series.times[2].time.index, 0);
}

const qnl::exports::ExportArray& ArrayOf(const qnl::exports::ExportFrame& frame, const std::string& name) {
    const auto found =
        std::find_if(frame.arrays.begin(), frame.arrays.end(),
                     [&](const qnl::exports::ExportArray& array) { return array.name == name; });
    if (found == frame.arrays.end()) {
        throw std::runtime_error("no array " + name);
    }
    return *found;
}

template <typename Value>
Value ValueOf(const qnl::exports::ExportFrame& frame, const std::string& name, std::size_t place) {
    return std::get<std::vector<Value>>(ArrayOf(frame, name).values).at(place);
}

TEST_F(SeriesTest, FramesCarryAStatusBesideWhatIsNoNumber) {
    const SeriesResults loaded = Load(0);
    const qnl::exports::ExportFrame frame = qnl::exports::TimeFrame(loaded, 2);
    EXPECT_EQ(frame.numbers.at(0).value, 6.4);
    for (std::size_t i = 0; i < loaded.surface.Nodes(); ++i) {
        const bool missing = loaded.surface.points[i][0] == 0.0F;
        EXPECT_EQ(ValueOf<int>(frame, "Status", i), missing ? 1 : 0);
        EXPECT_EQ(std::isnan(ValueOf<float>(frame, "Frozen ratio [%]", i)), missing);
    }
}

TEST_F(SeriesTest, TheStaticFrameTellsWallsAndTimesToFreeze) {
    const SeriesResults loaded = Load(0);
    const qnl::exports::ExportFrame frame = qnl::exports::StaticFrame(loaded);
    EXPECT_EQ(frame.numbers.at(0).name, "Freeze temperature [°C]");
    EXPECT_EQ(frame.numbers.at(0).value, 130.0);
    const auto node = static_cast<std::size_t>(
        loaded.surface.numberOfNode[static_cast<std::size_t>(project.Label({2.0, 1.0, 2.0}))]);
    EXPECT_FLOAT_EQ(ValueOf<float>(frame, "Wall thickness [mm]", node), 2.0F);
    EXPECT_FLOAT_EQ(ValueOf<float>(frame, "Opposite hit point [mm]", 3 * node), 2.0F);
    EXPECT_NEAR(ValueOf<float>(frame, "Opposite hit point [mm]", 3 * node + 2), 0.0F, 1e-6F);
    EXPECT_EQ(ValueOf<float>(frame, "Inward direction", 3 * node + 2), -1.0F);
    // Hottest 165, 145 and 125 degC at 0.1, 2 and 6.4 s.
    EXPECT_FLOAT_EQ(ValueOf<float>(frame, "Time to freeze [s]", node), 5.3F);
    EXPECT_EQ(ValueOf<int>(frame, "Freeze status", node), 0);
    EXPECT_EQ(ValueOf<int>(frame, "Last to freeze, rank", node), 0);
    const auto end = static_cast<std::size_t>(
        loaded.surface.numberOfNode[static_cast<std::size_t>(project.Label({4.0, 1.0, 1.0}))]);
    EXPECT_EQ(ValueOf<int>(frame, "Freeze status", end), 2);
    EXPECT_EQ(ValueOf<int>(frame, "Last to freeze, rank", end), 1);
}

TEST_F(SeriesTest, ItemsOfThePageCarryLevelsInItsOrder) {
    const SeriesResults loaded = Load(0);
    const std::vector<qnl::page::ReportItem> items = qnl::page::ReportItems(loaded);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].BlockName(2), "item-1-2");
    EXPECT_EQ(items[0].range.min, 0.0 + 1.0);
    EXPECT_EQ(items[0].range.max, 40.0 + 4.0);
    EXPECT_FALSE(items[0].steady);
    EXPECT_EQ(items[1].name, "Time to freeze");
    EXPECT_TRUE(items[1].steady);
    EXPECT_EQ(items[2].name, "Wall thickness");
    const qnl::page::Levels ratio = qnl::page::ItemLevels(items[0], 0, loaded);
    const qnl::page::Levels freeze = qnl::page::ItemLevels(items[1], 0, loaded);
    for (std::size_t k = 0; k < loaded.order.size(); ++k) {
        const auto node = static_cast<std::size_t>(loaded.order[k]);
        const float x = loaded.surface.points[node][0];
        EXPECT_EQ(ratio[k] == qnl::page::StatusLevel(0), x == 0.0F);
        EXPECT_EQ(ratio[k] == 65527, x == 4.0F);
        EXPECT_EQ(freeze[k] == qnl::page::StatusLevel(1),
                  loaded.history->status[node] == qnl::series::FreezeStatus::NeverFrozen);
    }
}

}  // namespace
