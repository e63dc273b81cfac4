#include "page/ReportItems.h"

#include <gtest/gtest.h>

#include "support_apps/SeriesFixture.h"

namespace {

using qnl::series::LoadedSeries;
using ReportItemsTest = SeriesFixture;

TEST_F(ReportItemsTest, ItemsOfThePageCarryLevelsInItsOrder) {
    const LoadedSeries loaded = Load(0);
    const std::vector<qnl::page::ReportItem> items = qnl::page::ReportItems(loaded);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].BlockName(2), "item-1-2");
    EXPECT_EQ(items[0].range.min, 0.0 + 1.0);
    EXPECT_EQ(items[0].range.max, 40.0 + 4.0);
    EXPECT_FALSE(items[0].steady);
    EXPECT_EQ(items[1].name, "Time to freeze");
    EXPECT_TRUE(items[1].steady);
    EXPECT_EQ(items[2].name, "Wall thickness");
    const qnl::page::Levels ratio = qnl::page::ItemLevels(items[0], 0, loaded);
    const qnl::page::Levels freeze = qnl::page::ItemLevels(items[1], 0, loaded);
    for (std::size_t k = 0; k < loaded.order.size(); ++k) {
        const auto node = static_cast<std::size_t>(loaded.order[k]);
        const float x = loaded.surface.points[node][0];
        EXPECT_EQ(ratio[k] == qnl::page::StatusLevel(0), x == 0.0F);
        EXPECT_EQ(ratio[k] == 65527, x == 4.0F);
        EXPECT_EQ(freeze[k] == qnl::page::StatusLevel(1),
                  loaded.history->status[node] == qnl::series::FreezeStatus::NeverFrozen);
    }
}

}  // namespace
