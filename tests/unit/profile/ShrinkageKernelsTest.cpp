#include "profile/kernels/ShrinkageKernels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/ArrayFromOne.h"

namespace {

double Sink(const Doubles& depths, const Doubles& shrinkage, double t) {
    bool beyondWhole = false;
    const double sink = CalcuSinkDepth(depths, shrinkage, t, beyondWhole);
    EXPECT_FALSE(beyondWhole);
    return sink;
}

double Linear(double x) {
    return 1.0 - std::pow(1.0 - x, 1.0 / 3.0);
}

double Location(const Doubles& depths, const Doubles& shrinkage, double maxShrinkage, double t = 1.0) {
    return CalcuShrinkLocation(depths, shrinkage, t, maxShrinkage);
}

const Doubles kFourSteps{10.0, 11.0, 12.0, 13.0, 14.0};

}  // namespace

TEST(SinkDepth, AddsTheLinearShrinkageOfTheOuterLayer) {
    EXPECT_DOUBLE_EQ(Sink({0.0, 1.0, 1.5}, {10.0, 10.0, 20.0}, 1.0), Linear(0.1) * 1.0 + Linear(0.15) * 0.5);
    EXPECT_DOUBLE_EQ(Sink({0.0, 1.0}, {48.8, 48.8}, 1.0), 0.2);
}

TEST(SinkDepth, EndsBeforeTwoTolerances) {
    EXPECT_DOUBLE_EQ(Sink({7.0, 8.0, 9.0}, {10.0, 10.0, 10.0}, 1.0), Linear(0.1));
}

TEST(SinkDepth, EndsBeforeFourMillimetres) {
    EXPECT_DOUBLE_EQ(Sink({0.0, 3.0, 4.0}, {10.0, 10.0, 10.0}, 100.0), Linear(0.1) * 3.0);
}

TEST(SinkDepth, ShrinkageOfZeroOrLessAddsNothing) {
    EXPECT_EQ(Sink({0.0, 1.0}, {0.0, 0.0}, 1.0), 0.0);
    EXPECT_EQ(Sink({0.0, 0.5, 1.0}, {-10.0, 10.0, -50.0}, 1.0), 0.0);
}

TEST(SinkDepth, FewerThanTwoElementsHaveNone) {
    EXPECT_EQ(Sink({}, {}, 1.0), 0.0);
    EXPECT_EQ(Sink({0.0}, {10.0}, 1.0), 0.0);
}

TEST(SinkDepth, MoreThanTheWholeIsTakenAsTheWhole) {
    bool beyondWhole = false;
    EXPECT_EQ(CalcuSinkDepth(Doubles{0.0, 0.5}, Doubles{150.0, 250.0}, 1.0, beyondWhole), 0.5);
    EXPECT_TRUE(beyondWhole);
    EXPECT_EQ(CalcuSinkDepth(Doubles{0.0, 0.5}, Doubles{105.0, 105.0}, 1.0, beyondWhole), 0.5);
    EXPECT_EQ(Sink({0.0, 0.5}, {100.0, 100.0}, 1.0), 0.5) << "the whole itself is no fault";
}

TEST(ShrinkLocation, ShrinkageBelowTheThresholdGivesZero) {
    EXPECT_EQ(Location(kFourSteps, {0.33, 0.1, 0.1, 0.1, 0.1}, 1.0), 0.0)
        << "equal to a third of the maximum";
    EXPECT_EQ(Location(kFourSteps, {0.2, 0.1, 0.1, 0.1, 0.1}, 1.0), 0.0);
    EXPECT_EQ(Location(kFourSteps, {0.35, 0.1, 0.1, 0.1, 0.1}, 1.0), 0.3);
    EXPECT_EQ(Location(kFourSteps, {1.0, 0.5, 0.1, 0.1, 0.1}, 50.0), 0.0) << "the threshold is at most 1";
    EXPECT_EQ(Location(kFourSteps, {1.01, 0.5, 0.1, 0.1, 0.1}, 50.0), 0.3);
    EXPECT_EQ(Location(kFourSteps, {0.0, -1.0, -1.0, -1.0, -1.0}, -1e8), 0.0) << "and at least 0";
    EXPECT_EQ(Location(kFourSteps, {0.01, -1.0, -1.0, -1.0, -1.0}, -1e8), 0.3);
}

TEST(ShrinkLocation, LargestNearTheWallShows) {
    EXPECT_EQ(Location(kFourSteps, {5.0, 1.0, 1.0, 1.0, 1.0}, 5.0), 0.3);
}

TEST(ShrinkLocation, LargestInTheCoreDoesNotShow) {
    EXPECT_EQ(Location(kFourSteps, {1.0, 1.0, 5.0, 1.0, 1.0}, 5.0), 0.0);
}

TEST(ShrinkLocation, LargestAtBothDepthsShows) {
    EXPECT_EQ(Location(kFourSteps, {5.0, 1.0, 1.0, 4.8, 1.0}, 5.0), 0.3);
}

TEST(ShrinkLocation, NearIsTheOuterThirtyFivePercent) {
    EXPECT_EQ(Location({10.0, 11.0, 11.9, 13.0, 14.0}, {1.0, 5.0, 1.0, 1.0, 1.0}, 5.0), 0.0);
    EXPECT_EQ(Location({10.0, 11.0, 11.7, 13.0, 14.0}, {1.0, 5.0, 1.0, 1.0, 1.0}, 5.0), 0.3);
    EXPECT_EQ(Location({0.0, 6.0, 8.0, 14.0, 16.0, 20.0}, {1.0, 5.0, 1.0, 5.0, 1.0, 1.0}, 5.0, 10.0), 0.3)
        << "7 of 20 mm are near";
}

TEST(ShrinkLocation, NearlyTheLargestCounts) {
    EXPECT_EQ(Location(kFourSteps, {4.75, 1.0, 5.0, 1.0, 1.0}, 5.0), 0.3);
    EXPECT_EQ(Location(kFourSteps, {4.74, 1.0, 5.0, 1.0, 1.0}, 5.0), 0.0);
}

TEST(ShrinkLocation, LargestAtTheLastElementHasNoSegmentAndShows) {
    EXPECT_EQ(Location(kFourSteps, {1.0, 1.0, 1.0, 1.0, 5.0}, 5.0), 0.3);
}

TEST(ShrinkLocation, CountsToFiveTolerances) {
    EXPECT_EQ(Location({0.0, 1.0, 4.0, 5.0, 6.0}, {1.0, 1.0, 5.0, 90.0, 90.0}, 5.0), 0.0);
    EXPECT_EQ(Location({0.0, 1.0, 4.0, 5.0, 6.0}, {5.0, 1.0, 5.0, 90.0, 90.0}, 5.0), 0.3);
}

TEST(ShrinkLocation, TheReachGrowsWithTheTolerance) {
    EXPECT_EQ(Location(kFourSteps, {5.0, 1.0, 1.0, 90.0, 90.0}, 5.0, 0.5), 0.3);
}

TEST(ShrinkLocation, DepthsAreKnownToAHundredKilometres) {
    constexpr double kDeep = 1.05e8;
    EXPECT_EQ(Location({kDeep, kDeep + 1, kDeep + 2, kDeep + 3, kDeep + 4}, {1.0, 1.0, 5.0, 1.0, 1.0}, 5.0),
              0.3);
    EXPECT_EQ(Location({-kDeep, 1 - kDeep, 2 - kDeep, 3 - kDeep, 4 - kDeep}, {1.0, 1.0, 1.0, 1.0, 5.0}, 5.0),
              0.0);
    EXPECT_EQ(Location({-100000007.0, -100000000.0, -99999987.0}, {1.0, 1.0, 5.0}, 5.0, 10.0), 0.3);
}

TEST(ShrinkLocation, APointProfileShows) {
    EXPECT_EQ(Location({2.0, 2.0}, {5.0, 5.0}, 5.0), 0.3);
}
