#include "profile/kernels/FlakeKernels.h"

#include <gtest/gtest.h>

#include "support/ArrayFromOne.h"

namespace {

constexpr qnl::mesh::PassElementNumbering kTwoFaces{2};
constexpr qnl::Vector3 kAlongZ{0.0, 0.0, 1.0};

/// Components by cell 1 to 3, entry 0 unused.
constexpr double kXx[] = {9.0, 1.0, 0.2, 0.5};
constexpr double kYy[] = {9.0, 0.5, 0.3, 0.25};
constexpr double kZz[] = {9.0, 0.75, 0.25, 0.125};
constexpr double kXy[] = {9.0, 0.25, 0.0, 0.0};
constexpr double kXz[] = {9.0, 0.5, 0.0, 0.0};
constexpr double kYz[] = {9.0, 0.125, 0.0, 0.0};
constexpr qnl::OneBased<const double, qnl::CellId> ByCell(const double* component) {
    return {component, 3};
}

constexpr qnl::profile::TensorField kTensor{ByCell(kXx), ByCell(kYy), ByCell(kZz),
                                            ByCell(kXy), ByCell(kXz), ByCell(kYz)};

const Doubles kDepths{5.0, 6.0, 7.0, 8.0};
const Ints kIds{1, 3, 4, 5};

double Intensity(const Doubles& depths, const Ints& ids, const qnl::Vector3& d, double t) {
    return CalcuFlakeIntensity(depths, ids, kTwoFaces, kTensor, d, t);
}

}  // namespace

TEST(FlakeIntensity, StopsAtHalfTheDepthOfTheLastCellInReach) {
    EXPECT_EQ(Intensity(kDepths, kIds, kAlongZ, 2.5), 0.75) << "half of 2 is the first cell's depth";
    EXPECT_EQ(Intensity(kDepths, kIds, kAlongZ, 10.0), 0.5) << "the mean of the first two cells";
}

TEST(FlakeIntensity, TheReachItselfIsOutside) {
    EXPECT_EQ(Intensity(kDepths, kIds, kAlongZ, 3.0), 0.75);
}

TEST(FlakeIntensity, WithoutACellInReachTakesTheFirstCell) {
    EXPECT_EQ(Intensity(kDepths, kIds, kAlongZ, 0.5), 0.75);
}

TEST(FlakeIntensity, WithoutACellInReachAFirstCellNearTheWallIsEnough) {
    EXPECT_EQ(Intensity({5.0, 5.25, 5.375, 6.5}, kIds, kAlongZ, 0.125), 0.75);
}

TEST(FlakeIntensity, AFaceInReachDoesNotDeepenTheLayer) {
    EXPECT_EQ(Intensity({5.0, 6.0, 7.0, 7.375, 8.0}, {1, 3, 4, 2, 5}, kAlongZ, 2.5), 0.75);
}

TEST(FlakeIntensity, TheLayerReachesTheFirstCellAtHalfTheDepth) {
    EXPECT_DOUBLE_EQ(Intensity({0.0, 1.0625, 2.25}, {1, 3, 4}, kAlongZ, 3.0),
                     (1.0625 * 0.75 + 1.1875 * 0.25) / 2.25);
    EXPECT_EQ(Intensity({0.0, 1.125, 2.25}, {1, 3, 4}, kAlongZ, 3.0), 0.75);
}

TEST(FlakeIntensity, ACellAtTheEndMayBeTheOnlyOne) {
    EXPECT_EQ(Intensity({0.0, 1.0}, {1, 3}, kAlongZ, 5.0), 0.75);
}

TEST(FlakeIntensity, ALengthNextToNothingIsHeldAgainstAGuardOfItsSize) {
    EXPECT_DOUBLE_EQ(Intensity({0.0, 1e-20}, {1, 3}, kAlongZ, 5.0), 0.375);
}

TEST(FlakeIntensity, AFirstCellAtNoDepthHasNoWeight) {
    EXPECT_EQ(Intensity({0.0, 1.0}, {3, 4}, kAlongZ, 0.5), 0.0);
}

TEST(FlakeIntensity, CellsCountWithTheirDistanceFromTheOneBefore) {
    EXPECT_DOUBLE_EQ(Intensity({0.0, 1.0, 1.5, 4.0, 9.0}, {1, 3, 2, 4, 5}, kAlongZ, 8.0),
                     0.75 * 0.25 + 0.25 * 0.75)
        << "the face between the cells is passed over";
}

TEST(FlakeIntensity, FacesAloneGiveNone) {
    EXPECT_EQ(Intensity({0.0, 1.0}, {1, 2}, kAlongZ, 5.0), 0.0);
}

TEST(FlakeIntensity, ProjectsTheTensorOntoTheDirection) {
    EXPECT_DOUBLE_EQ(Intensity(kDepths, kIds, {0.6, 0.8, 0.0}, 2.5), 0.36 + 0.5 * 0.64 + 2.0 * 0.25 * 0.48);
    EXPECT_DOUBLE_EQ(Intensity(kDepths, kIds, {0.6, 0.0, 0.8}, 2.5), 0.36 + 0.75 * 0.64 + 2.0 * 0.5 * 0.48);
    EXPECT_DOUBLE_EQ(Intensity(kDepths, kIds, {0.0, 0.6, -0.8}, 2.5),
                     0.5 * 0.36 + 0.75 * 0.64 - 2.0 * 0.125 * 0.48);
}
