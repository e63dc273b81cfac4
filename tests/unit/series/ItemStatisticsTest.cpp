#include "series/ItemStatistics.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using qnl::series::ItemStatistics;
using qnl::series::Summarise;

TEST(ItemStatistics, LeavesOutWhatIsNotFinite) {
    const ItemStatistics values = Summarise({3.0F, std::nanf(""), -1.0F, INFINITY, 4.0F});
    EXPECT_EQ(values.min, -1.0);
    EXPECT_EQ(values.mean, 2.0);
    EXPECT_EQ(values.max, 4.0);
    EXPECT_EQ(values.finite, 3);
    EXPECT_EQ(values.notFinite, 2);
}

TEST(ItemStatistics, NothingHasNoRange) {
    const ItemStatistics values = Summarise({});
    EXPECT_TRUE(std::isnan(values.min) && std::isnan(values.mean) && std::isnan(values.max));
    EXPECT_EQ(values.finite, 0);
}

}  // namespace
