#include "profile/kernels/PackingKernels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/ArrayFromOne.h"

namespace {

const Doubles kDepths{3.0, 4.0, 5.0};
const Doubles kTemperatures{80.0, 120.0, 120.0};
const Doubles kDensities{0.9, 1.0, 1.1};

qnl::profile::PackingProfile Profile() {
    return {kDepths, kTemperatures, kDensities};
}

qnl::profile::PackingLimits Limits(double t, double window) {
    return {120.0, 1.0, t, window};
}

}  // namespace

TEST(PackingIndex, ComparesTheMeltWithTheFrozenDensity) {
    EXPECT_NEAR(CalcuPackingIndex(Profile(), Limits(1.0, 10.0)), -0.0125, 1e-15);
}

TEST(PackingIndex, ASegmentThatEndsAtTheWindowIsOutside) {
    EXPECT_NEAR(CalcuPackingIndex(Profile(), Limits(1.0, 2.0)), 0.0125, 1e-15);
    EXPECT_EQ(CalcuPackingIndex(Profile(), Limits(1.0, 0.0)), 0.0);
}

TEST(PackingIndex, TheLengthIsCappedAtFiveTolerances) {
    EXPECT_NEAR(CalcuPackingIndex(Profile(), Limits(0.2, 10.0)), -0.025, 1e-15);
}

TEST(PackingIndex, ShortProfilesHaveNone) {
    const Doubles depths{0.0, 0.9e-8};
    const Doubles hot{200.0, 200.0};
    const Doubles light{0.5, 0.5};
    EXPECT_EQ(CalcuPackingIndex({depths, hot, light}, Limits(1.0, 3.0)), 0.0);
    const Doubles longer{0.0, 1.05e-8};
    EXPECT_NEAR(CalcuPackingIndex({longer, hot, light}, Limits(1.0, 3.0)), 0.5, 1e-12);
    const Doubles limit{0.0, 1e-8};
    EXPECT_NEAR(CalcuPackingIndex({limit, hot, light}, Limits(1.0, 3.0)), 0.5, 1e-12) << "the limit itself";
    const Doubles one{0.0};
    EXPECT_EQ(CalcuPackingIndex({one, one, one}, Limits(1.0, 3.0)), 0.0);
    constexpr double kBeyond[] = {9.0, 2.0};
    const qnl::OneBased<const double> none(kBeyond, 0);
    EXPECT_EQ(CalcuPackingIndex({none, none, none}, {120.0, 0.0, 1.0, 3.0}), 0.0) << "no entry is looked at";
}

TEST(PackingIndex, AFreezeDensityOfZeroIsDividedBy) {
    EXPECT_TRUE(std::isinf(CalcuPackingIndex(Profile(), {120.0, 0.0, 1.0, 10.0})));
}

TEST(PackingIndexToGas, EndsWithTheSegmentThatReachesGas) {
    EXPECT_NEAR(CalcuPackingIndexToGas(Profile(), Doubles{-1.0, 1.0, -1.0}, Limits(1.0, 10.0)), 0.0125,
                1e-15);
    EXPECT_NEAR(CalcuPackingIndexToGas(Profile(), Doubles{-1.0, 0.1, -1.0}, Limits(1.0, 10.0)), -0.0125,
                1e-15)
        << "the gas limit itself is not gas";
    EXPECT_NEAR(CalcuPackingIndexToGas(Profile(), Doubles{1.0, -1.0, 1.0}, Limits(1.0, 10.0)), -0.0125, 1e-15)
        << "the marker of the first element is not looked at";
}
