#include "profile/resolved/ProfileReadings.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace qnl::profile {
namespace {

// Entries of a 1-based view; what stands on either side of them is far from any of them.
class Samples {
public:
    Samples(std::initializer_list<double> samples) : entries_{kFar} {
        entries_.insert(entries_.end(), samples);
        entries_.push_back(kFar);
    }
    OneBased<const double> View() const { return {entries_.data(), static_cast<int>(entries_.size()) - 2}; }

private:
    static constexpr double kFar = 1e9;

    std::vector<double> entries_;
};

WallLayers Layers(const Samples& depths, const Samples& temperatures) {
    return ReadWallLayers(depths.View(), temperatures.View(), 130.0);
}

double Highest(const Samples& values) {
    return HighestValue(values.View());
}

double MeanNonZero(const Samples& depths, const Samples& values, double window) {
    return MeanNonZeroByLength(depths.View(), values.View(), window);
}

void ExpectLayers(const WallLayers& layers, double here, double far, double core, double wall) {
    EXPECT_NEAR(layers.frozenHere, here, 1e-14);
    EXPECT_NEAR(layers.frozenFar, far, 1e-14);
    EXPECT_NEAR(layers.moltenCore, core, 1e-14);
    EXPECT_NEAR(layers.wall, wall, 1e-14);
}

TEST(WallLayers, EndWhereTheFreezeTemperatureIsReached) {
    // 40 to 220 over 0.9 mm: 130 at half of it; 220 to 100 over 0.6 mm: 130 at a quarter from the end.
    ExpectLayers(Layers({0.0, 0.9, 1.4, 2.0}, {40, 220, 220, 100}), 0.45, 0.15, 1.4, 2.0);
    ExpectLayers(Layers({0.5, 1.4, 1.9, 2.5}, {40, 220, 220, 100}), 0.45, 0.15, 1.4, 2.0);
}

TEST(WallLayers, AreNoneWhereAllIsMolten) {
    ExpectLayers(Layers({0.0, 1.0}, {131, 200}), 0.0, 0.0, 1.0, 1.0);
    ExpectLayers(Layers({0.0, 1.0}, {130, 130}), 0.0, 0.0, 1.0, 1.0);
}

TEST(WallLayers, AreTheWallWhereAllIsFrozen) {
    ExpectLayers(Layers({0.0, 0.4, 1.0}, {40, 129.9, 50}), 1.0, 1.0, 0.0, 1.0);
}

TEST(WallLayers, OfAWallThatFreezesFromOneSide) {
    ExpectLayers(Layers({0.0, 1.0}, {100, 160}), 0.5, 0.0, 0.5, 1.0);
    ExpectLayers(Layers({0.0, 1.0}, {160, 100}), 0.0, 0.5, 0.5, 1.0);
}

TEST(WallLayers, CountAColdSpotInsideAsCore) {
    ExpectLayers(Layers({0, 1, 2, 3, 4}, {30, 230, 30, 230, 30}), 0.5, 0.5, 3.0, 4.0);
}

TEST(WallLayers, TouchTheLimitAtOneSample) {
    ExpectLayers(Layers({0, 1, 3}, {30, 130, 30}), 1.0, 2.0, 0.0, 3.0);
}

TEST(HighestValue, IsThatOfTheSamples) {
    EXPECT_EQ(Highest({-300.0, -200.0, -250.0}), -200.0);
    EXPECT_EQ(Highest({-200.0, -250.0, -300.0}), -200.0);
    EXPECT_EQ(Highest({-300.0, -250.0, -200.0}), -200.0);
    EXPECT_EQ(Highest({7.0}), 7.0);
}

// Distances 1, 3, 4 and 2 between the neighbours: samples of 0 count neither in the sum nor in the length.
TEST(MeanNonZeroByLength, WeighsWithTheDistancesOfTheNeighbours) {
    const Samples depths{0.0, 1.0, 3.0, 5.0};
    EXPECT_NEAR(MeanNonZero(depths, {4.0, 2.0, 1.0, 8.0}, 10.0), 30.0 / 10.0, 1e-14);
    EXPECT_NEAR(MeanNonZero(depths, {0.0, 2.0, 1.0, 1e-8}, 10.0), 10.0 / 7.0, 1e-14);
    EXPECT_NEAR(MeanNonZero(depths, {4.0, -2.0, 1.0, 8.0}, 3.0), -2.0 / 4.0, 1e-14);
    EXPECT_EQ(MeanNonZero(depths, {0.0, 0.0, 0.0, 0.0}, 10.0), 0.0);
    EXPECT_EQ(MeanNonZero({1.0}, {5.0}, 10.0), 0.0) << "no length";
}

TEST(MeanNonZeroByLength, CountsWhatIsJustAboveZero) {
    EXPECT_NEAR(MeanNonZero({0.0, 1.0, 3.0, 5.0}, {0.0, 1.05e-8, 0.0, -1.05e-8}, 10.0), 1.05e-8 / 5.0, 1e-22);
}

TEST(MeanNonZeroByLength, IsThatOfAThinWallToo) {
    EXPECT_NEAR(MeanNonZero({0.0, 0.1, 0.3}, {1.0, 2.0, 4.0}, 10.0), 1.5 / 0.6, 1e-14);
    EXPECT_NEAR(MeanNonZero({0.0, 0.1, 0.3}, {1.0, 0.0, 0.0}, 10.0), 1.0, 1e-14);
}

}  // namespace
}  // namespace qnl::profile
