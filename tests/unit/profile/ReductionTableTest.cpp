#include "profile/ReductionTable.h"

#include <gtest/gtest.h>

namespace {

using qnl::RunTraits;

bool ReadsFirst(bool RunTraits::*only, bool warp = true) {
    RunTraits run{};
    run.warp = warp;
    if (only != nullptr) {
        run.*only = true;
    }
    return qnl::profile::ReadsWindowBeforeSetting(run);
}

}  // namespace

TEST(ReadsWindowBeforeSetting, InWarpRunsWithAQuantityThatSetsItLater) {
    EXPECT_TRUE(ReadsFirst(&RunTraits::cool));
    EXPECT_TRUE(ReadsFirst(&RunTraits::gas));
    EXPECT_TRUE(ReadsFirst(&RunTraits::fillCoolingTime));
}

TEST(ReadsWindowBeforeSetting, NotInWarpRunsThatOnlyTakeIt) {
    EXPECT_FALSE(ReadsFirst(nullptr));
    EXPECT_FALSE(ReadsFirst(&RunTraits::flow));
    EXPECT_FALSE(ReadsFirst(&RunTraits::flakes));
    EXPECT_FALSE(ReadsFirst(&RunTraits::intermediateTimes));
    EXPECT_FALSE(ReadsFirst(&RunTraits::gasInCool)) << "gas in the cooling counts in cool runs only";
    EXPECT_FALSE(ReadsFirst(&RunTraits::gasRestricts)) << "without gas nothing is restricted";
}

TEST(ReadsWindowBeforeSetting, NotWhereTheFrozenRatioSetsItFirst) {
    EXPECT_FALSE(ReadsFirst(&RunTraits::cool, false));
    EXPECT_FALSE(ReadsFirst(&RunTraits::gas, false));
    EXPECT_FALSE(ReadsFirst(&RunTraits::fillCoolingTime, false));
}
