#include "profile/kernels/FrozenKernels.h"

#include <gtest/gtest.h>

#include "profile/kernels/SegmentLengths.h"
#include "support/ArrayFromOne.h"

namespace {

constexpr double kFreeze = 120.0;

double Ratio(const Doubles& depths, const Doubles& temperatures, double window) {
    return CalcuFrozenRatio(depths, temperatures, kFreeze, window);
}

double InPolymer(const Doubles& depths, const Doubles& temperatures, const Doubles& markers, double window) {
    return CalcuFrozenRatioInPolymer(depths, temperatures, markers, kFreeze, window);
}

}  // namespace

TEST(FrozenRatio, SumsTheFrozenPartsOfAllSegments) {
    EXPECT_DOUBLE_EQ(Ratio({0.0, 1.0, 2.0}, {100.0, 150.0, 50.0}, 10.0), 55.0);
    EXPECT_DOUBLE_EQ(Ratio({-4.0, -3.0, -1.0}, {100.0, 110.0, 130.0}, 10.0), 100.0 * 2.0 / 3.0);
    EXPECT_EQ(Ratio({0.0, 2.0}, {121.0, 180.0}, 10.0), 0.0);
}

TEST(FrozenRatio, CapsBothLengthsAtTheWindow) {
    EXPECT_DOUBLE_EQ(Ratio({0.0, 1.0, 2.0}, {100.0, 150.0, 50.0}, 1.5), 100.0 * 1.1 / 1.5);
    EXPECT_EQ(Ratio({0.0, 1.0, 2.0}, {100.0, 150.0, 50.0}, 1.0), 100.0);
}

TEST(FrozenRatio, CountsSegmentsBeyondTheWindow) {
    EXPECT_DOUBLE_EQ(Ratio({0.0, 1.0, 2.0}, {150.0, 150.0, 90.0}, 1.0), 50.0);
}

TEST(FrozenRatio, ExactlyAtTheFreezeTemperatureIsNotFrozen) {
    EXPECT_EQ(Ratio({0.0, 1.0}, {kFreeze, kFreeze}, 10.0), 0.0);
}

TEST(FrozenRatio, FewerThanTwoSamplesAreFrozen) {
    EXPECT_EQ(Ratio({}, {}, 10.0), 100.0);
    EXPECT_EQ(Ratio({1.0}, {200.0}, 10.0), 100.0);
    constexpr double kBeyond[] = {9.0, 2.0};
    EXPECT_EQ(CalcuFrozenRatio({kBeyond, 0}, {kBeyond, 0}, kFreeze, 10.0), 100.0) << "no entry is looked at";
}

TEST(FrozenRatio, AShortProfileIsFrozen) {
    EXPECT_EQ(Ratio({0.0, 1e-10}, {200.0, 200.0}, 10.0), 100.0);
    EXPECT_EQ(Ratio({0.0, 1.05e-10}, {200.0, 200.0}, 10.0), 0.0);
    EXPECT_EQ(Ratio({0.0, 5.0}, {200.0, 200.0}, 0.0), 100.0);
}

TEST(FrozenRatioInPolymer, OneEndCountsHalfAsPolymerAndFullyAsFrozen) {
    EXPECT_DOUBLE_EQ(
        InPolymer({0.0, 1.0, 2.0, 3.0}, {50.0, 50.0, 200.0, 200.0}, {-1.0, -1.0, 1.0, 1.0}, 10.0),
        100.0 * ((1.0 + 70.0 / 150.0) / 1.5));
    EXPECT_EQ(InPolymer({0.0, 1.0}, {200.0, 200.0}, {-1.0, 0.0}, 10.0), 0.0);
}

TEST(FrozenRatioInPolymer, ASegmentInGasIsNotCountedAsFrozen) {
    EXPECT_EQ(InPolymer({0.0, 1.0, 2.0, 3.0}, {200.0, 200.0, 200.0, 50.0}, {-1.0, -1.0, 1.0, 1.0}, 10.0),
              0.0);
}

TEST(FrozenRatioInPolymer, APolymerEndCountsOnEitherSideOfASegment) {
    EXPECT_DOUBLE_EQ(InPolymer({0.0, 1.0, 2.0}, {200.0, 200.0, 50.0}, {1.0, -1.0, 1.0}, 10.0),
                     100.0 * 70.0 / 150.0);
}

TEST(FrozenRatioInPolymer, AShortLengthOfPolymerIsFrozen) {
    EXPECT_EQ(InPolymer({0.0, 1e-10}, {200.0, 200.0}, {-1.0, -1.0}, 10.0), 100.0) << "the limit itself";
    EXPECT_EQ(InPolymer({0.0, 1.05e-10}, {200.0, 200.0}, {-1.0, -1.0}, 10.0), 0.0);
}

TEST(FrozenRatioInPolymer, NeverExceedsAHundred) {
    EXPECT_EQ(InPolymer({0.0, 1.0, 2.0}, {50.0, 50.0, 50.0}, {-1.0, -1.0, 1.0}, 10.0), 100.0);
}

TEST(FrozenRatioInPolymer, CapsBothLengthsAtTheWindow) {
    EXPECT_DOUBLE_EQ(InPolymer({0.0, 1.0, 3.0}, {50.0, 200.0, 200.0}, {-1.0, -1.0, -1.0}, 2.0),
                     100.0 * ((70.0 / 150.0) / 2.0));
}

TEST(FrozenRatioInPolymer, WithoutPolymerIsFrozen) {
    EXPECT_EQ(InPolymer({0.0, 1.0}, {200.0, 200.0}, {1.0, 1.0}, 10.0), 100.0);
    EXPECT_EQ(InPolymer({0.0, 1.0}, {200.0, 200.0}, {-0.1, -0.1}, 10.0), 100.0)
        << "the marker limit itself is not polymer";
    EXPECT_EQ(InPolymer({0.0}, {200.0}, {-1.0}, 10.0), 100.0);
}

TEST(SegmentLengths, AMeltSegmentFromTheLimitUpwardsCountsAsNothing) {
    EXPECT_EQ(qnl::profile::HotLength(2.0, 100.0, 150.0, 100.0), 0.0);
    EXPECT_EQ(qnl::profile::HotLength(2.0, 150.0, 100.0, 100.0), 0.0);
    EXPECT_EQ(qnl::profile::HotLength(2.0, 100.5, 150.0, 100.0), 2.0);
    EXPECT_EQ(qnl::profile::HotLength(2.0, 50.0, 100.0, 100.0), 0.0);
    EXPECT_DOUBLE_EQ(qnl::profile::HotLength(2.0, 50.0, 150.0, 100.0), 1.0);
    EXPECT_EQ(qnl::profile::HotLength(2.0, 50.0, 60.0, 100.0), 0.0);
}

TEST(SegmentLengths, AMeltSegmentMayCoolDown) {
    EXPECT_DOUBLE_EQ(qnl::profile::HotLength(2.0, 150.0, 50.0, 100.0), 1.0);
}

TEST(SegmentLengths, MarkersBeyondATenthTellPolymerFromGas) {
    EXPECT_TRUE(qnl::profile::IsPolymer(-0.105));
    EXPECT_FALSE(qnl::profile::IsPolymer(-0.1));
    EXPECT_TRUE(qnl::profile::IsGas(0.105));
    EXPECT_FALSE(qnl::profile::IsGas(0.1));
}

TEST(SegmentLengths, AFrozenSegmentUpToTheLimitCountsInFull) {
    EXPECT_EQ(qnl::profile::FrozenLength(2.0, 50.0, 100.0, 100.0), 2.0);
    EXPECT_EQ(qnl::profile::FrozenLength(2.0, 100.0, 150.0, 100.0), 0.0);
}
