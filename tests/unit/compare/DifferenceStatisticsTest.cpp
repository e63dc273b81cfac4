#include "compare/DifferenceStatistics.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using qnl::compare::Differences;
using qnl::compare::DifferenceStatistics;
using qnl::compare::SummariseDifferences;

const float kNothing = std::nanf("");

TEST(SummariseDifferences, LargestMeanAndRootOfTheMeanSquare) {
    // Differences 3, -4, 0, 1: magnitudes add up to 8, squares to 26.
    const DifferenceStatistics values =
        SummariseDifferences({1.0F, 2.0F, 5.0F, 7.0F}, {4.0F, -2.0F, 5.0F, 8.0F}, {0, 1, 2, 3});
    EXPECT_EQ(values.compared, 4);
    EXPECT_EQ(values.largest, -4.0);
    EXPECT_EQ(values.place, 1U);
    EXPECT_EQ(values.meanMagnitude, 2.0);
    EXPECT_DOUBLE_EQ(values.rms, std::sqrt(6.5));
    EXPECT_FALSE(values.sameBits);
    EXPECT_EQ(values.notFinite, 0);
}

TEST(SummariseDifferences, OnlyTheEntriesThatAreNamed) {
    const DifferenceStatistics values =
        SummariseDifferences({1.0F, 0.0F, 3.0F, 0.0F}, {2.0F, 9.0F, 6.0F, kNothing}, {0, 2});
    EXPECT_EQ(values.compared, 2);
    EXPECT_EQ(values.largest, 3.0);
    EXPECT_EQ(values.place, 2U);
    EXPECT_EQ(values.notFinite, 0);
}

TEST(SummariseDifferences, TheFirstOfEqualDifferencesIsTheLargest) {
    const DifferenceStatistics values =
        SummariseDifferences({0.0F, 0.0F, 0.0F}, {1.0F, -2.0F, 2.0F}, {0, 1, 2});
    EXPECT_EQ(values.largest, -2.0);
    EXPECT_EQ(values.place, 1U);
}

TEST(SummariseDifferences, CountsWhatIsNotFiniteAndLeavesItOut) {
    const DifferenceStatistics values = SummariseDifferences(
        {1.0F, kNothing, INFINITY, 4.0F, kNothing}, {2.0F, 3.0F, 1.0F, -INFINITY, kNothing}, {0, 1, 2, 3, 4});
    EXPECT_EQ(values.compared, 1);
    EXPECT_EQ(values.largest, 1.0);
    EXPECT_EQ(values.meanMagnitude, 1.0);
    EXPECT_EQ(values.notFinite, 4);
    EXPECT_EQ(values.finiteInOne, 3);
}

TEST(SummariseDifferences, SameBitsAreMoreThanEqualNumbers) {
    EXPECT_TRUE(SummariseDifferences({1.5F, kNothing}, {1.5F, kNothing}, {0, 1}).sameBits);
    const DifferenceStatistics zeros = SummariseDifferences({0.0F}, {-0.0F}, {0});
    EXPECT_FALSE(zeros.sameBits);
    EXPECT_EQ(zeros.largest, 0.0);
    EXPECT_TRUE(SummariseDifferences({1.0F, 2.0F}, {1.0F, 3.0F}, {0}).sameBits);
}

TEST(SummariseDifferences, NothingHasNoNumbers) {
    const DifferenceStatistics values = SummariseDifferences({1.0F}, {2.0F}, {});
    EXPECT_EQ(values.compared, 0);
    EXPECT_TRUE(std::isnan(values.largest) && std::isnan(values.meanMagnitude) && std::isnan(values.rms));
}

TEST(SummariseDifferences, SinglePrecisionValuesAreSubtractedInDoublePrecision) {
    // 2^24 and 1/4: their difference has 27 bits.
    EXPECT_EQ(SummariseDifferences({0.25F}, {16777216.0F}, {0}).largest, 16777215.75);
}

TEST(Differences, AreNotNumbersWhereOneIsNotFinite) {
    const std::vector<float> found = Differences({1.0F, kNothing, 2.0F}, {3.5F, 1.0F, INFINITY});
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0], 2.5F);
    EXPECT_TRUE(std::isnan(found[1]) && std::isnan(found[2]));
}

}  // namespace
