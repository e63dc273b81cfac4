#include "profile/resolved/ProfileReadings.h"

#include <gtest/gtest.h>

#include <vector>

namespace qnl::profile {
namespace {

// Entry 0 of a 1-based array is unused.
OneBased<const double> View(const std::vector<double>& entries) {
    return {entries.data(), static_cast<int>(entries.size()) - 1};
}

WallLayers Layers(const std::vector<double>& depths, const std::vector<double>& temperatures) {
    return ReadWallLayers(View(depths), View(temperatures), 130.0);
}

void ExpectLayers(const WallLayers& layers, double here, double far, double core, double wall) {
    EXPECT_NEAR(layers.frozenHere, here, 1e-14);
    EXPECT_NEAR(layers.frozenFar, far, 1e-14);
    EXPECT_NEAR(layers.moltenCore, core, 1e-14);
    EXPECT_NEAR(layers.wall, wall, 1e-14);
}

TEST(WallLayers, EndWhereTheFreezeTemperatureIsReached) {
    // 40 to 220 over 0.9 mm: 130 at half of it; 220 to 100 over 0.6 mm: 130 at a quarter from the end.
    ExpectLayers(Layers({0, 0.0, 0.9, 1.4, 2.0}, {0, 40, 220, 220, 100}), 0.45, 0.15, 1.4, 2.0);
    ExpectLayers(Layers({0, 0.5, 1.4, 1.9, 2.5}, {0, 40, 220, 220, 100}), 0.45, 0.15, 1.4, 2.0);
}

TEST(WallLayers, AreNoneWhereAllIsMolten) {
    ExpectLayers(Layers({0, 0.0, 1.0}, {0, 131, 200}), 0.0, 0.0, 1.0, 1.0);
    ExpectLayers(Layers({0, 0.0, 1.0}, {0, 130, 130}), 0.0, 0.0, 1.0, 1.0);
}

TEST(WallLayers, AreTheWallWhereAllIsFrozen) {
    ExpectLayers(Layers({0, 0.0, 0.4, 1.0}, {0, 40, 129.9, 50}), 1.0, 1.0, 0.0, 1.0);
}

TEST(WallLayers, OfAWallThatFreezesFromOneSide) {
    ExpectLayers(Layers({0, 0.0, 1.0}, {0, 100, 160}), 0.5, 0.0, 0.5, 1.0);
    ExpectLayers(Layers({0, 0.0, 1.0}, {0, 160, 100}), 0.0, 0.5, 0.5, 1.0);
}

TEST(WallLayers, CountAColdSpotInsideAsCore) {
    ExpectLayers(Layers({0, 0, 1, 2, 3, 4}, {0, 30, 230, 30, 230, 30}), 0.5, 0.5, 3.0, 4.0);
}

TEST(WallLayers, TouchTheLimitAtOneSample) {
    ExpectLayers(Layers({0, 0, 1, 3}, {0, 30, 130, 30}), 1.0, 2.0, 0.0, 3.0);
}

TEST(HighestValue, IsThatOfTheSamples) {
    EXPECT_EQ(HighestValue(View({1e9, -300.0, -200.0, -250.0})), -200.0);
    EXPECT_EQ(HighestValue(View({1e9, 7.0})), 7.0);
}

// Weights 0.5, 1.5, 2, 1: samples of 0 count neither in the sum nor in the length.
TEST(MeanNonZeroByLength, WeighsWithTheDistancesOfTheNeighbours) {
    const std::vector<double> depths{0, 0.0, 1.0, 3.0, 5.0};
    EXPECT_NEAR(MeanNonZeroByLength(View(depths), View({0, 4.0, 2.0, 1.0, 8.0}), 10.0), 15.0 / 5.0, 1e-14);
    EXPECT_NEAR(MeanNonZeroByLength(View(depths), View({0, 0.0, 2.0, 1.0, 1e-8}), 10.0), 5.0 / 3.5, 1e-14);
    EXPECT_NEAR(MeanNonZeroByLength(View(depths), View({0, 4.0, -2.0, 1.0, 8.0}), 3.0), -1.0 / 2.0, 1e-14);
    EXPECT_EQ(MeanNonZeroByLength(View(depths), View({0, 0.0, 0.0, 0.0, 0.0}), 10.0), 0.0);
    EXPECT_EQ(MeanNonZeroByLength(View({0, 1.0}), View({0, 5.0}), 10.0), 0.0) << "no length";
}

}  // namespace
}  // namespace qnl::profile
