#include "profile/resolved/EdgeCurvature.h"

#include <gtest/gtest.h>

#include <cmath>

namespace qnl::profile {
namespace {

constexpr FieldRange kNothingKnown{};

FieldRange Above(double lowest) {
    return {lowest, kNothingKnown.highest};
}

double ValueAt(double a, double b, double curvature, double s) {
    return (1.0 - s) * a + s * b - 0.5 * s * (1.0 - s) * curvature;
}

TEST(EdgeCurvature, IsTheDifferenceOfTheSlopesWhereTheParabolaIsMonotone) {
    EXPECT_EQ(LimitedCurvature({40.0, 50.0, 25.0, 5.0}, kNothingKnown), -20.0);
    EXPECT_EQ(LimitedCurvature({40.0, 50.0, 25.0, 6.0}, kNothingKnown), -19.0);
    EXPECT_EQ(LimitedCurvature({50.0, 40.0, -4.0, -16.0}, kNothingKnown), -12.0);
    EXPECT_EQ(LimitedCurvature({40.0, 40.0, 0.0, 0.0}, kNothingKnown), 0.0);
}

// Slopes that belong to one parabola: rise is their mean. An extremum on the edge stays, however high.
TEST(EdgeCurvature, LeavesEveryParabolaAsItIs) {
    EXPECT_EQ(LimitedCurvature({200.0, 200.0, 40.0, -40.0}, kNothingKnown), -80.0);
    EXPECT_EQ(LimitedCurvature({200.0, 200.0, -40.0, 40.0}, kNothingKnown), 80.0);
    EXPECT_EQ(LimitedCurvature({200.0, 201.0, 41.0, -39.0}, kNothingKnown), -80.0);
}

// rise 0, slopes 0 and -c: departure (c/2)/c = 0.5, a front: nothing beyond the monotone parabola.
TEST(EdgeCurvature, TakesAnOvershootAtAFrontBack) {
    EXPECT_EQ(LimitedCurvature({230.0, 230.0, 0.0, -60.0}, kNothingKnown), 0.0);
    EXPECT_EQ(LimitedCurvature({230.0, 225.0, 10.0, -60.0}, kNothingKnown), -10.0);
    EXPECT_EQ(LimitedCurvature({40.0, 50.0, 25.0, 4.0}, kNothingKnown), -20.0);
}

// Departure 0.1, half way between 0.05 and 0.15: half of the curvature of 100.
TEST(EdgeCurvature, TakesBackByTheDepartureFromAParabola) {
    EXPECT_NEAR(LimitedCurvature({200.0, 200.0, 60.0, -40.0}, kNothingKnown), -50.0, 1e-11);
    EXPECT_NEAR(LimitedCurvature({200.0, 200.0, -40.0, 60.0}, kNothingKnown), 50.0, 1e-11);
    EXPECT_EQ(LimitedCurvature({200.0, 200.0, 55.0, -45.0}, kNothingKnown), -100.0);
    EXPECT_EQ(LimitedCurvature({200.0, 200.0, 65.0, -35.0}, kNothingKnown), 0.0);
}

// a = 42, b = 46 over a bound of 40: rise 4, room 2, so c = 2 (sqrt 6 + sqrt 2)^2 touches the bound.
TEST(EdgeCurvature, KeepsAboveTheLowestValueKnown) {
    const EdgeData edge{42.0, 46.0, -36.0, 44.0};
    EXPECT_EQ(LimitedCurvature(edge, kNothingKnown), 80.0);
    const double bounded = LimitedCurvature(edge, Above(40.0));
    EXPECT_NEAR(bounded, 2.0 * std::pow(std::sqrt(6.0) + std::sqrt(2.0), 2.0), 1e-12);
    double least = 1e9;
    for (int i = 0; i <= 10000; ++i) {
        least = std::fmin(least, ValueAt(edge.first, edge.second, bounded, i / 10000.0));
    }
    EXPECT_NEAR(least, 40.0, 1e-5);
    EXPECT_EQ(LimitedCurvature(edge, Above(20.0)), 80.0) << "a parabola that keeps above the bound";
    EXPECT_EQ(LimitedCurvature(edge, Above(45.0)), 8.0) << "an end below the bound: monotone";
    EXPECT_EQ(LimitedCurvature({42.0, 42.0, 30.0, -30.0}, Above(40.0)), -60.0) << "upwards it does not count";
    EXPECT_EQ(LimitedCurvature({42.0, 46.0, -9.5, 17.5}, Above(40.0)), 27.0) << "the bound is at 29.9";
    EXPECT_NEAR(LimitedCurvature({42.0, 42.0, -8.5, 8.5}, Above(40.0)), 16.0, 1e-12);
    EXPECT_EQ(LimitedCurvature({42.0, 42.0, -8.0, 8.0}, Above(45.0)), 0.0) << "both ends below the bound";
}

// The same upside down: a bound of 230 over 228 and 224.
TEST(EdgeCurvature, KeepsBelowTheHighestValueKnown) {
    const FieldRange known{kNothingKnown.lowest, 230.0};
    const EdgeData edge{228.0, 224.0, 36.0, -44.0};
    EXPECT_EQ(LimitedCurvature(edge, kNothingKnown), -80.0);
    EXPECT_NEAR(LimitedCurvature(edge, known), -2.0 * std::pow(std::sqrt(6.0) + std::sqrt(2.0), 2.0), 1e-12);
    EXPECT_EQ(LimitedCurvature(edge, {kNothingKnown.lowest, 250.0}), -80.0) << "a parabola that keeps below";
    EXPECT_EQ(LimitedCurvature(edge, {kNothingKnown.lowest, 225.0}), -8.0) << "an end above: monotone";
    EXPECT_EQ(LimitedCurvature({228.0, 228.0, -30.0, 30.0}, known), 60.0) << "downwards it does not count";
}

TEST(EdgeCurvature, IsZeroWithoutSlopes) {
    EXPECT_EQ(LimitedCurvature({40.0, 50.0, std::nan(""), 5.0}, kNothingKnown), 0.0);
    EXPECT_EQ(LimitedCurvature({std::nan(""), std::nan(""), 0.0, 0.0}, kNothingKnown), 0.0)
        << "an edge between nodes without values";
}

TEST(EdgeCurvature, TreatsSmallCurvaturesAsLargeOnes) {
    const EdgeData valley{40.0, 40.0, -0.125, 0.125};
    EXPECT_EQ(LimitedCurvature(valley, kNothingKnown), 0.25);
    EXPECT_EQ(LimitedCurvature(valley, Above(40.0)), 0.0);
    EXPECT_EQ(LimitedCurvature({40.0, 40.0, 0.125, -0.125}, Above(40.0)), -0.25);
    EXPECT_NEAR(LimitedCurvature({40.0, 40.0, -0.105, 0.145}, kNothingKnown), 0.7 * 0.25, 1e-13)
        << "departure 0.08";
}

}  // namespace
}  // namespace qnl::profile
