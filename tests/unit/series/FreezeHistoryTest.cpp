#include "series/FreezeHistory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "series/LoadedSeries.h"
#include "support_apps/BoxProject.h"

namespace {

using qnl::kernel::Point;
using qnl::series::FirstTimeBelow;
using qnl::series::FreezeStatus;
using qnl::series::LoadedSeries;

constexpr double kFreeze = 130.0;
constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

TEST(FirstTimeBelow, IsLinearBetweenTimes) {
    EXPECT_EQ(FirstTimeBelow({1.0, 3.0, 7.0}, {150.0, 140.0, 100.0}, kFreeze), 4.0);
}

TEST(FirstTimeBelow, IsTheFirstTimeWhenFrozenFromTheStart) {
    EXPECT_EQ(FirstTimeBelow({1.0, 3.0}, {129.0, 100.0}, kFreeze), 1.0);
}

TEST(FirstTimeBelow, TheLimitItselfIsNotBelow) {
    EXPECT_EQ(FirstTimeBelow({1.0, 3.0}, {150.0, kFreeze}, kFreeze), std::nullopt);
    EXPECT_EQ(FirstTimeBelow({1.0, 3.0}, {kFreeze, 120.0}, kFreeze), 1.0);
}

TEST(FirstTimeBelow, MeltingAgainLaterDoesNotCount) {
    EXPECT_EQ(FirstTimeBelow({0.0, 1.0, 2.0, 3.0}, {140.0, 120.0, 140.0, 120.0}, kFreeze), 0.5);
}

/// Cubes of 1 mm whose temperature rises by 10 K from each to the next along x.
struct HistoryTest : testing::Test {
    static BoxProject::Field Along(double start) {
        return [start](const Point& place) { return start + 10.0 * place[0]; };
    }
    static double Nothing(const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : kNothing; }

    static void AddTimes(const BoxProject& project, double first, double last) {
        project.AddTime(1, 1.0F, Along(first), Nothing);
        project.AddTime(0, 3.0F, Along(last), Nothing);
    }
    static std::size_t Number(const BoxProject& project, const LoadedSeries& loaded, const Point& place) {
        const auto label = static_cast<std::size_t>(project.Label(place));
        return static_cast<std::size_t>(loaded.surface.numberOfNode[label]);
    }
};

TEST_F(HistoryTest, NodesFreezeWithTheHottestElementOfTheirRay) {
    const BoxProject project(Cubes());
    AddTimes(project, 100.0, 80.0);
    const LoadedSeries loaded = qnl::series::LoadSeries(project.Series(), 0);
    const std::size_t early = Number(project, loaded, {2.0, 1.0, 2.0});
    const std::size_t late = Number(project, loaded, {3.0, 1.0, 2.0});
    EXPECT_NEAR(loaded.history->hottest[0][late], 135.0, 1e-9);
    EXPECT_NEAR(loaded.history->hottest[1][late], 115.0, 1e-9);
    EXPECT_EQ(loaded.history->status[early], FreezeStatus::Freezes);
    EXPECT_FLOAT_EQ(loaded.history->timeToFreeze[early], 1.0F);
    EXPECT_FLOAT_EQ(loaded.history->timeToFreeze[late], 1.5F);
}

TEST_F(HistoryTest, NeverFrozenIsAStatusWithoutATime) {
    const BoxProject project(Cubes());
    AddTimes(project, 140.0, 100.0);
    const LoadedSeries loaded = qnl::series::LoadSeries(project.Series(), 0);
    const std::size_t hot = Number(project, loaded, {3.0, 1.0, 0.0});
    EXPECT_EQ(loaded.history->status[hot], FreezeStatus::NeverFrozen);
    EXPECT_TRUE(std::isnan(loaded.history->timeToFreeze[hot]));
}

TEST_F(HistoryTest, SharesAreThoseOfMeanCornerTemperatures) {
    const BoxProject project(Cubes());
    AddTimes(project, 100.0, 80.0);
    const qnl::series::FreezeHistory history = *qnl::series::LoadSeries(project.Series(), 0).history;
    ASSERT_EQ(history.frozenVolume.size(), 2U);
    EXPECT_NEAR(history.frozenVolume[0], 75.0, 1e-9);
    EXPECT_NEAR(history.frozenVolume[1], 100.0, 1e-9);
    EXPECT_NEAR(history.frozenSurface[0], 70.0, 1e-9);
    EXPECT_NEAR(history.frozenSurface[1], 100.0, 1e-9);
}

TEST_F(HistoryTest, TheRunnerCountsForNothing) {
    qnl::testing::BoxMesh box = Cubes();
    box.region = [](const Point& middle) { return middle[0] > 3.0 ? 1 : 0; };
    const BoxProject project(box);
    AddTimes(project, 110.0, 80.0);
    const LoadedSeries loaded = qnl::series::LoadSeries(project.Series(), 0);
    EXPECT_NEAR(loaded.history->frozenVolume[0], 100.0 * 8.0 / 12.0, 1e-9);
    EXPECT_NEAR(loaded.history->frozenSurface[0], 100.0 * 20.0 / 28.0, 1e-9);
    const std::size_t runner = Number(project, loaded, {4.0, 1.0, 1.0});
    EXPECT_EQ(loaded.history->status[runner], FreezeStatus::NoResult);
    EXPECT_TRUE(std::isnan(loaded.history->hottest[0][runner]));
    EXPECT_EQ(loaded.history->status[Number(project, loaded, {3.0, 1.0, 2.0})], FreezeStatus::Freezes);
}

TEST_F(HistoryTest, WithoutAFreezeTemperatureNothingFreezes) {
    const BoxProject project(Cubes());
    project.MakeThermoset();
    AddTimes(project, 100.0, 80.0);
    const qnl::series::FreezeHistory history = *qnl::series::LoadSeries(project.Series(), 0).history;
    EXPECT_FALSE(history.Freezes());
    EXPECT_EQ(history.frozenVolume[1], 0.0);
    for (const FreezeStatus status : history.status) {
        EXPECT_EQ(status, FreezeStatus::NoResult);
    }
}

TEST_F(HistoryTest, ProfilesHoldOneSampleADepth) {
    const BoxProject project(Cubes());
    const auto downwards = [](double top) {
        return [top](const Point& place) { return top + 10.0 * place[2]; };
    };
    project.AddTime(1, 1.0F, downwards(100.0), Nothing);
    project.AddTime(0, 2.0F, downwards(90.0), Nothing);
    LoadedSeries loaded = qnl::series::LoadSeries(project.Series(), 0);
    const int node = static_cast<int>(Number(project, loaded, {2.0, 1.0, 2.0}));
    qnl::series::ProfileSeries series(loaded.project, loaded.surface, loaded.rays, {node});
    qnl::series::ReadFreezeHistory(loaded.project, loaded.series, loaded.surface, loaded.rays, series);
    const qnl::series::DepthProfiles profiles = series.Take();
    EXPECT_EQ(profiles.counts, std::vector<int>{4});
    EXPECT_EQ(profiles.depths, (std::vector<float>{0.0F, 0.5F, 1.5F, 2.0F}));
    ASSERT_EQ(profiles.temperatures.size(), 2U);
    EXPECT_EQ(profiles.temperatures[0], (std::vector<float>{120.0F, 115.0F, 105.0F, 100.0F}));
    EXPECT_EQ(profiles.temperatures[1], (std::vector<float>{110.0F, 105.0F, 95.0F, 90.0F}));
}

}  // namespace
