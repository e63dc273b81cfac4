#include "profile/kernels/SkinKernels.h"

#include <gtest/gtest.h>

#include "support/ArrayFromOne.h"

TEST(SkinRatio, IsThePolymerShare) {
    const Doubles depths{4.0, 5.0, 7.0};
    const Doubles markers{-1.0, -1.0, 1.0};
    EXPECT_DOUBLE_EQ(CalcuSkinRatio(depths, markers, 10.0), 200.0 / 3.0);
    EXPECT_DOUBLE_EQ(CalcuSkinRatio(depths, markers, 2.5), 80.0);
    EXPECT_EQ(CalcuSkinRatio(depths, markers, 1.5), 100.0);
}

TEST(SkinRatio, GoesOnBehindTheGas) {
    EXPECT_DOUBLE_EQ(CalcuSkinRatio(Doubles{0.0, 1.0, 2.0, 3.0}, Doubles{-1.0, 1.0, -1.0, -1.0}, 10.0),
                     200.0 / 3.0);
}

TEST(SkinRatio, FewerThanTwoElementsAndShortProfilesAreFull) {
    EXPECT_EQ(CalcuSkinRatio(Doubles{}, Doubles{}, 10.0), 100.0);
    EXPECT_EQ(CalcuSkinRatio(Doubles{2.0}, Doubles{1.0}, 10.0), 100.0);
    EXPECT_EQ(CalcuSkinRatio(Doubles{0.0, 1e-10}, Doubles{1.0, 1.0}, 10.0), 100.0);
    EXPECT_EQ(CalcuSkinRatio(Doubles{0.0, 1.05e-10}, Doubles{1.0, 1.0}, 10.0), 0.0);
    EXPECT_EQ(CalcuSkinRatio(Doubles{2.0, 2.0}, Doubles{1.0, 1.0}, 10.0), 100.0);
    constexpr double kBeyond[] = {9.0, 2.0};
    EXPECT_EQ(CalcuSkinRatio({kBeyond, 0}, {kBeyond, 0}, 10.0), 100.0) << "no entry is looked at";
}

TEST(SkinRatio, TheMarkerLimitItselfIsNotPolymer) {
    EXPECT_EQ(CalcuSkinRatio(Doubles{0.0, 1.0}, Doubles{-0.1, -0.1}, 10.0), 0.0);
    EXPECT_DOUBLE_EQ(CalcuSkinRatio(Doubles{0.0, 1.0}, Doubles{-0.1, -0.2}, 10.0), 50.0);
}

TEST(SkinThickness, EndsAtTheFirstElementInGas) {
    EXPECT_DOUBLE_EQ(CalcuSkinThickness(Doubles{0.0, 1.0, 3.0, 4.0}, Doubles{-1.0, -1.0, 1.0, -1.0}), 2.0);
    EXPECT_DOUBLE_EQ(CalcuSkinThickness(Doubles{0.0, 1.0, 3.0, 4.0}, Doubles{-1.0, -1.0, 0.1, -1.0}), 2.5)
        << "the gas limit itself is not gas";
}

TEST(SkinThickness, TheFirstElementInGasDoesNotEndIt) {
    EXPECT_DOUBLE_EQ(CalcuSkinThickness(Doubles{0.0, 1.0, 3.0}, Doubles{1.0, -1.0, -1.0}), 2.5);
}

TEST(SkinThickness, HasNoCap) {
    EXPECT_DOUBLE_EQ(CalcuSkinThickness(Doubles{0.0, 100.0}, Doubles{-1.0, -1.0}), 100.0);
}

TEST(SkinThickness, FewerThanTwoElementsHaveNone) {
    EXPECT_EQ(CalcuSkinThickness(Doubles{}, Doubles{}), 0.0);
    EXPECT_EQ(CalcuSkinThickness(Doubles{5.0}, Doubles{-1.0}), 0.0);
}
