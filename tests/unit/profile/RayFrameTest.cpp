#include "profile/kernels/RayFrame.h"

#include <gtest/gtest.h>

#include <cmath>

using qnl::Vector3;

namespace {

Vector3 Row(const qnl::profile::RayFrame& frame, std::size_t row) {
    return {frame[row][1], frame[row][2], frame[row][3]};
}

void ExpectRow(const qnl::profile::RayFrame& frame, std::size_t row, const Vector3& expected) {
    EXPECT_EQ(frame[row][0], 0.0) << "row " << row;
    EXPECT_EQ(frame[row][1], expected.x) << "row " << row;
    EXPECT_EQ(frame[row][2], expected.y) << "row " << row;
    EXPECT_EQ(frame[row][3], expected.z) << "row " << row;
}

}  // namespace

TEST(RayFrame, AlongXHasItsFirstAxisInY) {
    qnl::profile::RayFrame frame;
    EXPECT_EQ(BuildRayFrame(frame, {1.0, 0.0, 0.0}), 1);
    ExpectRow(frame, 1, {0.0, 1.0, 0.0});
    ExpectRow(frame, 2, {0.0, 0.0, 1.0});
    ExpectRow(frame, 3, {1.0, 0.0, 0.0});
}

TEST(RayFrame, InAPlaneOfTheAxes) {
    qnl::profile::RayFrame frame;
    EXPECT_EQ(BuildRayFrame(frame, {0.6, 0.0, 0.8}), 1);
    ExpectRow(frame, 1, {0.0, 1.0, 0.0});
    ExpectRow(frame, 2, {-0.8, 0.0, 0.6});
    ExpectRow(frame, 3, {0.6, 0.0, 0.8});
}

TEST(RayFrame, IsOrthonormalAndRightHandedForAnyDirection) {
    const double third = 1.0 / std::sqrt(3.0);
    for (const Vector3& d : {Vector3{third, third, third}, Vector3{-third, third, -third},
                             Vector3{0.36, 0.48, -0.8}, Vector3{0.0, -1.0, 0.0}}) {
        qnl::profile::RayFrame frame;
        ASSERT_EQ(BuildRayFrame(frame, d), 1);
        for (std::size_t row = 1; row <= 3; ++row) {
            EXPECT_NEAR(qnl::Length(Row(frame, row)), 1.0, 1e-15);
            EXPECT_NEAR(qnl::Dot(Row(frame, row), Row(frame, row % 3 + 1)), 0.0, 1e-15);
        }
        EXPECT_NEAR(qnl::Dot(qnl::Cross(Row(frame, 1), Row(frame, 2)), d), 1.0, 1e-15);
        ExpectRow(frame, 3, d);
    }
}

TEST(RayFrame, NearlyAlongZBecomesTheAxesOfTheMesh) {
    qnl::profile::RayFrame frame;
    EXPECT_EQ(BuildRayFrame(frame, {0.003, 0.0, std::sqrt(1.0 - 9e-6)}), 0);
    ExpectRow(frame, 1, {1.0, 0.0, 0.0});
    ExpectRow(frame, 2, {0.0, 1.0, 0.0});
    ExpectRow(frame, 3, {0.0, 0.0, 1.0});
}

TEST(RayFrame, NearlyAlongMinusZTurnsFirstAndThirdAxis) {
    qnl::profile::RayFrame frame;
    EXPECT_EQ(BuildRayFrame(frame, {0.0, 0.003, -std::sqrt(1.0 - 9e-6)}), 0);
    ExpectRow(frame, 1, {-1.0, 0.0, 0.0});
    ExpectRow(frame, 2, {0.0, 1.0, 0.0});
    ExpectRow(frame, 3, {0.0, 0.0, -1.0});
}

TEST(RayFrame, BeyondTheLimitIsGeneral) {
    qnl::profile::RayFrame frame;
    EXPECT_EQ(BuildRayFrame(frame, {0.004, 0.0, -std::sqrt(1.0 - 1.6e-5)}), 1);
    EXPECT_EQ(frame[3][1], 0.004);
    const double limit = std::sqrt(1e-5);
    ASSERT_EQ(limit * limit, 1e-5);
    EXPECT_EQ(BuildRayFrame(frame, {0.0, limit, std::sqrt(1.0 - 1e-5)}), 1) << "the limit itself";
    EXPECT_EQ(BuildRayFrame(frame, {0.0, std::sqrt(1.05e-5), -std::sqrt(1.0 - 1.05e-5)}), 1);
}

TEST(Vector3, NormaliseRefusesShortAndUndefinedDirections) {
    Vector3 tooShort{0.0, 9e-21, 0.0};
    EXPECT_FALSE(qnl::Normalise(tooShort));
    Vector3 undefined{std::nan(""), 0.0, 1.0};
    EXPECT_FALSE(qnl::Normalise(undefined));
    Vector3 shortest{0.0, 0.0, -2e-20};
    EXPECT_TRUE(qnl::Normalise(shortest));
    EXPECT_EQ(shortest.z, -1.0);
}
