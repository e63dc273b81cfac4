#include "kernel/recovery/SlopeFit.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using qnl::kernel::Point;
using qnl::kernel::SlopeFit;

void ExpectNear(const Point& slope, const Point& expected) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(slope[axis], expected[axis], 1e-12) << axis;
    }
}

TEST(SlopeFit, MeetsALinearField) {
    SlopeFit fit;
    for (const Point& p :
         {Point{1, 0, 0}, Point{0, 2, 0}, Point{1, 1, -3}, Point{-2, 0, 1}, Point{0.1, 5, 0}}) {
        fit.Add(p, 3.0 * p[0] - 2.0 * p[1] + 7.0 * p[2]);
    }
    ExpectNear(fit.Slope(), {3.0, -2.0, 7.0});
}

// 20 at 1 mm and -5 at -0.5 mm, slopes of 20 and 10: the nearer place has four times the weight of a square
// that is a quarter.
TEST(SlopeFit, WeighsByTheInverseSquareOfTheDistance) {
    SlopeFit fit;
    fit.Add({1.0, 0.0, 0.0}, 20.0);
    fit.Add({-0.5, 0.0, 0.0}, -5.0);
    ExpectNear(fit.Slope(), {15.0, 0.0, 0.0});
}

TEST(SlopeFit, IsZeroWhereNothingIsKnown) {
    SlopeFit fit;
    ExpectNear(fit.Slope(), {0.0, 0.0, 0.0});
    fit.Add({0.0, 0.0, 0.0}, 5.0);
    fit.Add({0.0, 1.0, 0.0}, std::nan(""));
    ExpectNear(fit.Slope(), {0.0, 0.0, 0.0});
    fit.Add({1.0, 1.0, 0.0}, 4.0);
    ExpectNear(fit.Slope(), {2.0, 2.0, 0.0});
}

}  // namespace
