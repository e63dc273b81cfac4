#include "series/SurfaceDistance.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using qnl::Vector3;
using qnl::series::DistanceFromSurface;
using qnl::series::Surface;

/// A right triangle of sides 4 and 3 in the plane z = 0.
Surface Triangle() {
    Surface surface;
    surface.points = {{0.0F, 0.0F, 0.0F}, {4.0F, 0.0F, 0.0F}, {0.0F, 3.0F, 0.0F}};
    surface.triangles = {{0, 1, 2}};
    return surface;
}

TEST(DistanceFromSurface, AboveInsideIsTheHeight) {
    EXPECT_DOUBLE_EQ(DistanceFromSurface(Triangle(), {1.0, 1.0, 2.0}), 2.0);
    EXPECT_DOUBLE_EQ(DistanceFromSurface(Triangle(), {1.0, 1.0, -2.0}), 2.0);
    EXPECT_DOUBLE_EQ(DistanceFromSurface(Triangle(), {1.0, 1.0, 0.0}), 0.0);
}

TEST(DistanceFromSurface, BesideIsTheWayToEdgeOrCorner) {
    EXPECT_DOUBLE_EQ(DistanceFromSurface(Triangle(), {2.0, -3.0, 4.0}), 5.0);
    EXPECT_DOUBLE_EQ(DistanceFromSurface(Triangle(), {7.0, -4.0, 0.0}), 5.0);
    // The hypotenuse 3 x + 4 y = 12 is (12 + 12 - 12) / 5 away.
    EXPECT_DOUBLE_EQ(DistanceFromSurface(Triangle(), {4.0, 3.0, 0.0}), 2.4);
}

TEST(DistanceFromSurface, ATriangleWithoutAreaIsItsEdges) {
    Surface surface = Triangle();
    surface.points[2] = {2.0F, 0.0F, 0.0F};
    EXPECT_DOUBLE_EQ(DistanceFromSurface(surface, {3.0, 2.0, 0.0}), 2.0);
}

TEST(DistanceFromSurface, TheNearestTriangleCounts) {
    Surface surface = Triangle();
    surface.points.push_back({0.0F, 0.0F, 10.0F});
    surface.triangles.push_back({0, 1, 3});
    EXPECT_DOUBLE_EQ(DistanceFromSurface(surface, {1.0, -1.0, 2.0}), 1.0);
    EXPECT_TRUE(std::isinf(DistanceFromSurface(Surface(), {0.0, 0.0, 0.0})));
}

}  // namespace
