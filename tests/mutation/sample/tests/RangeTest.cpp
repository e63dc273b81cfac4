#include "range/Range.h"

#include <gtest/gtest.h>

#include <array>

TEST(Range, ValuesStayBetweenTheEnds) {
    EXPECT_EQ(Clamp(1, 2, 4), 2);
    EXPECT_EQ(Clamp(3, 2, 4), 3);
    EXPECT_EQ(Clamp(5, 2, 4), 4);
}

TEST(Range, TheMiddleLiesHalfWay) {
    EXPECT_EQ(Middle(1.0, 3.0), 2.0);
}

TEST(Range, TheLowestOfAllIsFound) {
    EXPECT_EQ(Lowest({3, 1, 2}), 1);
}

TEST(Range, ValuesAreTurned) {
    double value = 1.0;
    Turn(value, true);
    EXPECT_EQ(value, -1.0);
}

TEST(Range, BothEndsCount) {
    const std::array<int, kEnds> ends = {1, 1};
    EXPECT_TRUE(IsBoth(1, ends[0], ends[1]));
    EXPECT_FALSE(IsBoth(2, ends[0], ends[1]));
}

TEST(Range, TheEmptyNameIsNone) {
    EXPECT_FALSE(IsNamed(""));
    EXPECT_TRUE(IsNamed("a"));
}
