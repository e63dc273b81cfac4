#include "base/MortonOrder.h"

#include <gtest/gtest.h>

namespace {

using Points = std::vector<std::array<float, 3>>;

TEST(MortonOrder, CornersOfACubeFollowZThenYThenX) {
    const Points corners{{1, 1, 1}, {0, 1, 1}, {1, 0, 1}, {0, 0, 1},
                         {1, 1, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 0}};
    EXPECT_EQ(qnl::MortonOrder(corners), (std::vector<int>{7, 6, 5, 4, 3, 2, 1, 0}));
}

TEST(MortonOrder, HigherBitsOfAllAxesComeFirst) {
    // Cells 0, 256, 512 and 1023 along x, 0 and 512 along y; bits of x and y alternate.
    const Points points{{2.0F, 0.0F, 0.0F}, {1.0F, 2.0F, 0.0F}, {1.0F, 0.0F, 0.0F},
                        {0.0F, 2.0F, 0.0F}, {0.0F, 0.0F, 0.0F}, {4.0F, 4.0F, 0.0F}};
    EXPECT_EQ(qnl::MortonOrder(points), (std::vector<int>{4, 2, 0, 3, 1, 5}));
}

TEST(MortonOrder, PointsOfOneCellKeepTheirOrder) {
    const Points points{{1000.0F, 0.0F, 0.0F}, {0.3F, 0.0F, 0.0F}, {0.1F, 0.0F, 0.0F}, {0.0F, 0.0F, 0.0F}};
    EXPECT_EQ(qnl::MortonOrder(points), (std::vector<int>{1, 2, 3, 0}));
}

TEST(MortonOrder, FlatPointsFollowTheAxesThatHaveExtent) {
    const Points squareAcrossX{{5, 1, 1}, {5, 0, 1}, {5, 1, 0}, {5, 0, 0}};
    EXPECT_EQ(qnl::MortonOrder(squareAcrossX), (std::vector<int>{3, 2, 1, 0}));
    const Points line{{-2, 3, 9}, {-2, 3, 7}, {-2, 3, 8}};
    EXPECT_EQ(qnl::MortonOrder(line), (std::vector<int>{1, 2, 0}));
}

TEST(MortonOrder, PointsOfOnePlaceKeepTheirOrder) {
    EXPECT_EQ(qnl::MortonOrder({{1, 2, 3}}), std::vector<int>{0});
    EXPECT_EQ(qnl::MortonOrder({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}), (std::vector<int>{0, 1, 2}));
}

TEST(MortonOrder, NoPointsHaveNoOrder) {
    EXPECT_TRUE(qnl::MortonOrder({}).empty());
}

}  // namespace
