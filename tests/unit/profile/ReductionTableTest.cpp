#include "profile/ReductionTable.h"

#include <gtest/gtest.h>

namespace {

using qnl::profile::StageTraits;

bool ReadsFirst(bool StageTraits::*only, bool warp = true) {
    StageTraits stage{};
    stage.warp = warp;
    if (only != nullptr) {
        stage.*only = true;
    }
    return qnl::profile::ReadsWindowBeforeSetting(stage);
}

}  // namespace

TEST(ReadsWindowBeforeSetting, InWarpRunsWithAQuantityThatSetsItLater) {
    EXPECT_TRUE(ReadsFirst(&StageTraits::cool));
    EXPECT_TRUE(ReadsFirst(&StageTraits::gas));
    EXPECT_TRUE(ReadsFirst(&StageTraits::fillCoolingTime));
}

TEST(ReadsWindowBeforeSetting, NotInWarpRunsThatOnlyTakeIt) {
    EXPECT_FALSE(ReadsFirst(nullptr));
    EXPECT_FALSE(ReadsFirst(&StageTraits::flow));
    EXPECT_FALSE(ReadsFirst(&StageTraits::flakes));
    EXPECT_FALSE(ReadsFirst(&StageTraits::intermediateTimes));
    EXPECT_FALSE(ReadsFirst(&StageTraits::gasInCool)) << "gas in the cooling counts in cool runs only";
    EXPECT_FALSE(ReadsFirst(&StageTraits::gasRestricts)) << "without gas nothing is restricted";
}

TEST(ReadsWindowBeforeSetting, NotWhereTheFrozenRatioSetsItFirst) {
    EXPECT_FALSE(ReadsFirst(&StageTraits::cool, false));
    EXPECT_FALSE(ReadsFirst(&StageTraits::gas, false));
    EXPECT_FALSE(ReadsFirst(&StageTraits::fillCoolingTime, false));
}
