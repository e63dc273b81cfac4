#include "series/FreezingRegions.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using qnl::series::FreezeHistory;
using qnl::series::FreezeStatus;
using qnl::series::FreezingRegions;

constexpr float kNever = std::numeric_limits<float>::infinity();
constexpr float kNoResult = -1.0F;

/// A strip of quads, two nodes a column: column c holds nodes 2c and 2c + 1.
qnl::kernel::BoundaryGraph Strip(int columns) {
    std::vector<qnl::kernel::BoundaryFace> faces;
    for (int c = 0; c + 1 < columns; ++c) {
        faces.push_back({0, 0, 4, {2 * c, 2 * c + 1, 2 * c + 3, 2 * c + 2}});
    }
    return {faces, 2 * columns};
}

/// The same time, kNever or kNoResult, at both nodes of each column; all equally hot in the end.
FreezeHistory History(const std::vector<float>& columns) {
    FreezeHistory history;
    for (const float time : columns) {
        const bool freezes = time >= 0.0F && time < kNever;
        for (int row = 0; row < 2; ++row) {
            history.status.push_back(freezes          ? FreezeStatus::Freezes
                                     : time == kNever ? FreezeStatus::NeverFrozen
                                                      : FreezeStatus::NoResult);
            history.timeToFreeze.push_back(freezes ? time : std::numeric_limits<float>::quiet_NaN());
        }
    }
    history.hottest.emplace_back(history.status.size(), 100.0);
    return history;
}

/// Rank of the first node of each column.
std::vector<int> Ranks(const FreezingRegions& regions) {
    std::vector<int> ranks;
    for (std::size_t node = 0; node < regions.rank.size(); node += 2) {
        EXPECT_EQ(regions.rank[node], regions.rank[node + 1]);
        ranks.push_back(regions.rank[node]);
    }
    return ranks;
}

TEST(FindLastFreezing, LocalMaximaByTimeNeverFrozenFirst) {
    const FreezingRegions found =
        qnl::series::FindLastFreezing(Strip(6), History({3.0F, 5.0F, 2.0F, kNever, 1.0F, 4.0F}));
    EXPECT_EQ(Ranks(found), (std::vector<int>{0, 2, 0, 1, 0, 3}));
    ASSERT_EQ(found.regions.size(), 3U);
    EXPECT_TRUE(found.regions[0].neverFrozen);
    EXPECT_FALSE(found.regions[1].neverFrozen);
    EXPECT_EQ(found.regions[1].time, 5.0F);
    EXPECT_EQ(found.regions[2].time, 4.0F);
}

TEST(FindLastFreezing, NeighboursOfEqualTimeAreOneArea) {
    const FreezingRegions found =
        qnl::series::FindLastFreezing(Strip(7), History({5.0F, 5.0F, 5.0F, 1.0F, 3.0F, 3.0F, 4.0F}));
    EXPECT_EQ(Ranks(found), (std::vector<int>{1, 1, 1, 0, 0, 0, 2}));
}

TEST(FindLastFreezing, SeparateAreasThatNeverFreezeAreRankedByHeat) {
    FreezeHistory history = History({kNever, 1.0F, kNever, kNever});
    history.hottest.back()[5] = 160.0;
    const FreezingRegions found = qnl::series::FindLastFreezing(Strip(4), history);
    EXPECT_EQ(Ranks(found), (std::vector<int>{2, 0, 1, 1}));
    EXPECT_EQ(found.regions[0].node, 5);
    EXPECT_EQ(found.regions[0].hottest, 160.0);
    EXPECT_EQ(found.regions[1].node, 0);
}

TEST(FindLastFreezing, NodesWithoutResultPartAreasAndBelongToNone) {
    const FreezingRegions found =
        qnl::series::FindLastFreezing(Strip(5), History({2.0F, kNoResult, 2.0F, kNoResult, kNoResult}));
    EXPECT_EQ(Ranks(found), (std::vector<int>{1, 0, 2, 0, 0}));
    EXPECT_TRUE(qnl::series::FindLastFreezing(Strip(2), History({kNoResult, kNoResult})).regions.empty());
}

}  // namespace
