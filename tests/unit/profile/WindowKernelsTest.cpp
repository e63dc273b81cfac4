#include "profile/kernels/WindowKernels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/ArrayFromOne.h"

namespace {

const Doubles kDepths{0.0, 1.0, 3.0, 6.0};
const Doubles kValues{10.0, 20.0, 30.0, 40.0};
constexpr double kWide = 100.0;

}  // namespace

TEST(MaxInWindow, TakesTheLargestAndTellsTheLastPoint) {
    int last = 0;
    EXPECT_EQ(MaxInWindow(kDepths, kValues, kWide, last), 40.0);
    EXPECT_EQ(last, 4);
    EXPECT_EQ(MaxInWindow(kDepths, Doubles{5.0, 9.0, 7.0, 50.0}, 4.0, last), 9.0);
    EXPECT_EQ(last, 3);
}

TEST(MaxInWindow, ThePointAtTheBorderIsOutside) {
    int last = 0;
    EXPECT_EQ(MaxInWindow(kDepths, kValues, 3.0, last), 20.0);
    EXPECT_EQ(last, 2);
}

TEST(MaxInWindow, DoesNotFallBelowItsStart) {
    int last = 0;
    EXPECT_EQ(MaxInWindow(Doubles{0.0, 1.0}, Doubles{-150.0, -101.0}, kWide, last), -100.0);
    EXPECT_EQ(last, 2);
}

TEST(MaxInWindow, AnEmptyWindowGivesTheStartAndThePointOne) {
    int last = 0;
    EXPECT_EQ(MaxInWindow(kDepths, kValues, 0.0, last), -100.0);
    EXPECT_EQ(last, 1);
}

TEST(MaxInWindow, MeasuresFromTheFirstPoint) {
    int last = 0;
    EXPECT_EQ(MaxInWindow(Doubles{-7.0, -6.0, -4.0}, Doubles{1.0, 2.0, 3.0}, 2.0, last), 2.0);
}

TEST(MaxFromZeroInWindow, OfEqualValuesTakesTheDeeper) {
    EXPECT_TRUE(std::signbit(MaxFromZeroInWindow(Doubles{0.0, 1.0}, Doubles{0.0, -0.0}, kWide)));
    EXPECT_FALSE(std::signbit(MaxFromZeroInWindow(Doubles{0.0, 1.0}, Doubles{-0.0, 0.0}, kWide)));
}

TEST(MaxFromZeroInWindow, DoesNotFallBelowZero) {
    EXPECT_EQ(MaxFromZeroInWindow(kDepths, Doubles{-4.0, -3.0, -2.0, -1.0}, kWide), 0.0);
    EXPECT_EQ(MaxFromZeroInWindow(kDepths, kValues, 6.0), 30.0);
    EXPECT_EQ(MaxFromZeroInWindow(kDepths, kValues, 0.0), 0.0);
}

TEST(AverageInWindow, WeighsByHalfTheDistanceOfTheNeighbours) {
    EXPECT_DOUBLE_EQ(AverageInWindow(kDepths, kValues, kWide), 170.0 / 6.0);
    EXPECT_DOUBLE_EQ(AverageInWindow(kDepths, kValues, 3.0), 17.5) << "weights reach beyond the window";
    EXPECT_EQ(AverageInWindow(kDepths, kValues, 0.0), 0.0);
}

TEST(AverageInWindow, TinyWeightsAreNotDividedBy) {
    EXPECT_DOUBLE_EQ(AverageInWindow(Doubles{0.0, 1e-16}, Doubles{1000.0, 3000.0}, kWide), 2e-13);
    EXPECT_DOUBLE_EQ(AverageInWindow(Doubles{0.0, 1.05e-16}, Doubles{1000.0, 3000.0}, kWide), 2000.0);
}

TEST(BulkAverageInWindow, MultipliesEachWeight) {
    EXPECT_DOUBLE_EQ(BulkAverageInWindow(kDepths, kValues, Doubles{2.0, 0.0, 1.0, 1.0}, kWide), 29.0);
    EXPECT_DOUBLE_EQ(BulkAverageInWindow(kDepths, kValues, Doubles{2.0, 0.0, 1.0, 1.0}, 3.0), 10.0);
}

TEST(BulkAverageInWindow, WithoutWeightsGivesTheSum) {
    EXPECT_EQ(BulkAverageInWindow(kDepths, kValues, Doubles{0.0, 0.0, 0.0, 0.0}, kWide), 0.0);
    EXPECT_DOUBLE_EQ(BulkAverageInWindow(kDepths, kValues, Doubles{-2.0, 0.0, 0.0, 0.0}, kWide), -10.0);
}

TEST(BulkAverageInWindow, TinyWeightsAreNotDividedBy) {
    const Doubles depths{0.0, 2.0};
    const Doubles values{1000.0, 3000.0};
    EXPECT_DOUBLE_EQ(BulkAverageInWindow(depths, values, Doubles{5e-31, 5e-31}, kWide), 2e-27)
        << "the limit itself";
    EXPECT_DOUBLE_EQ(BulkAverageInWindow(depths, values, Doubles{5.25e-31, 5.25e-31}, kWide), 2000.0);
}

TEST(MeanNonZeroInWindow, PassesOverZeros) {
    EXPECT_EQ(MeanNonZeroInWindow(kDepths, Doubles{2.0, 1e-8, 4.0, 100.0}, 6.0), 3.0);
    EXPECT_EQ(MeanNonZeroInWindow(kDepths, Doubles{-2.0, 1.1e-8, 0.0, 0.0}, kWide), (-2.0 + 1.1e-8) / 2.0);
}

TEST(MeanNonZeroInWindow, WithoutValuesGivesZero) {
    EXPECT_EQ(MeanNonZeroInWindow(kDepths, Doubles{0.0, 0.0, 1e-9, 0.0}, kWide), 0.0);
    EXPECT_EQ(MeanNonZeroInWindow(kDepths, kValues, 0.0), 0.0);
}

TEST(ValueAtMiddle, InterpolatesWithinItsSegment) {
    const Doubles depths{2.0, 3.0, 6.0};
    const Doubles values{10.0, 20.0, 50.0};
    EXPECT_DOUBLE_EQ(qnl::profile::ValueAtMiddle(depths, values, 3), 30.0);
    EXPECT_DOUBLE_EQ(qnl::profile::ValueAtMiddle(depths, values, 2), 15.0);
    EXPECT_EQ(qnl::profile::ValueAtMiddle(depths, values, 1), 10.0);
}

TEST(ValueAtMiddle, OnAPointTakesTheFirstSegment) {
    EXPECT_DOUBLE_EQ(qnl::profile::ValueAtMiddle(Doubles{0.0, 2.0, 4.0}, Doubles{10.0, 20.0, 90.0}, 3), 20.0);
}

TEST(ValueAtMiddle, OnAPointKeepsTheRoundingOfTheFirstSegment) {
    EXPECT_EQ(qnl::profile::ValueAtMiddle(Doubles{0.0, 2.0, 4.0}, Doubles{1e16, 1.0, 9.0}, 3), 0.0)
        << "1e16 + (1 - 1e16)";
}

TEST(ValueAtMiddle, WithoutASegmentGivesZero) {
    EXPECT_EQ(qnl::profile::ValueAtMiddle(Doubles{0.0, std::nan(""), 4.0}, Doubles{10.0, 20.0, 30.0}, 3),
              0.0);
    EXPECT_EQ(qnl::profile::ValueAtMiddle(Doubles{0.0, std::nan("")}, Doubles{10.0, 20.0}, 2), 0.0);
}
