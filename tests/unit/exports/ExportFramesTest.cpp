#include "exports/ExportFrames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "support_apps/SeriesFixture.h"

namespace {

using qnl::series::LoadedSeries;
using ExportFramesTest = SeriesFixture;

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

TEST_F(ExportFramesTest, FramesCarryAStatusBesideWhatIsNoNumber) {
    const LoadedSeries loaded = Load(0);
    const qnl::exports::ExportFrame frame = qnl::exports::TimeFrame(loaded, 2);
    EXPECT_EQ(frame.numbers.at(0).value, 6.4);
    for (std::size_t i = 0; i < loaded.surface.Nodes(); ++i) {
        const bool missing = loaded.surface.points[i][0] == 0.0F;
        EXPECT_EQ(ValueOf<int>(frame, "Status", i), missing ? 1 : 0);
        EXPECT_EQ(std::isnan(ValueOf<float>(frame, "Frozen ratio [%]", i)), missing);
    }
}

TEST_F(ExportFramesTest, ThreeComponentsAreOneVector) {
    LoadedSeries loaded = Load(0);
    const std::size_t nodes = loaded.surface.Nodes();
    loaded.results.items.clear();
    loaded.layers.clear();
    float value = 1.0F;
    for (const char* name : {"Total", "Way, x", "Way, y", "Way, z", "Way, x", "Way, y"}) {
        loaded.results.items.push_back({1, name, "cm/s", {std::vector<float>(nodes, value)}});
        value += 1.0F;
    }
    loaded.results.items[2].values.front().clear();
    const qnl::exports::ExportFrame frame = qnl::exports::TimeFrame(loaded, 0);
    std::vector<std::string> names;
    for (const qnl::exports::ExportArray& array : frame.arrays) {
        names.push_back(array.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Status", "Total [cm per s]", "Way [cm per s]",
                                               "Way, x [cm per s]", "Way, y [cm per s]"}));
    EXPECT_EQ(frame.arrays[2].components, 3);
    EXPECT_EQ(ValueOf<float>(frame, "Way [cm per s]", 3), 2.0F);
    EXPECT_TRUE(std::isnan(ValueOf<float>(frame, "Way [cm per s]", 4)));
    EXPECT_EQ(ValueOf<float>(frame, "Way [cm per s]", 5), 4.0F);
}

TEST(ExportLabel, HasNoSlashAndTellsComponentsBeforeTheUnit) {
    EXPECT_EQ(qnl::exports::ExportLabel("Average velocity", "cm/s"), "Average velocity [cm per s]");
    EXPECT_EQ(qnl::exports::ExportLabel("Packing index", ""), "Packing index");
    EXPECT_EQ(qnl::exports::ComponentName({"Average velocity [cm per s]", 3, {}}, 1),
              "Average velocity, y [cm per s]");
    EXPECT_EQ(qnl::exports::ComponentName({"Inward direction", 3, {}}, 2), "Inward direction, z");
}

TEST_F(ExportFramesTest, TheStaticFrameTellsWallsAndTimesToFreeze) {
    const LoadedSeries loaded = Load(0);
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

}  // namespace
