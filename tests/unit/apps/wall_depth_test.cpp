#include "WallDepth.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

EntityRecord At(double x, double y, double z) {
    EntityRecord record{};
    record.boxMin[0] = x - 1.0;
    record.boxMax[0] = x + 1.0;
    record.boxMin[1] = y - 0.5;
    record.boxMax[1] = y + 0.5;
    record.zMiddle = z;
    return record;
}

/// Two faces and two cells: ids 1, 2 and 3, 4.
struct DepthSpanTest : testing::Test {
    std::array<EntityRecord, 3> faces{{{}, At(0.0, 0.0, 0.0), At(3.0, 4.0, 2.0)}};
    std::array<EntityRecord, 3> cells{{{}, At(1.0, 1.0, 1.0), At(2.0, 3.0, -1.0)}};
    qnl::PassElementMesh mesh{faces.data(), cells.data(), qnl::PassElementNumbering{2}};
};

TEST_F(DepthSpanTest, IsTheRangeOfDepthsWhateverTheOrder) {
    const std::array<int, 4> ids{3, 2, 4, 1};
    EXPECT_DOUBLE_EQ(qnl::DepthSpan(mesh, ids.data(), 4, {0.0, 0.0, 1.0}), 3.0);
    EXPECT_DOUBLE_EQ(qnl::DepthSpan(mesh, ids.data(), 4, {0.0, 0.0, -1.0}), 3.0);
    EXPECT_DOUBLE_EQ(qnl::DepthSpan(mesh, ids.data(), 4, {1.0, 0.0, 0.0}), 3.0);
    EXPECT_DOUBLE_EQ(qnl::DepthSpan(mesh, ids.data(), 4, {0.6, 0.8, 0.0}), 5.0);
}

TEST_F(DepthSpanTest, OneElementOrNoneSpansNothing) {
    const std::array<int, 1> ids{4};
    EXPECT_EQ(qnl::DepthSpan(mesh, ids.data(), 1, {0.0, 0.0, 1.0}), 0.0);
    EXPECT_EQ(qnl::DepthSpan(mesh, ids.data(), 0, {0.0, 0.0, 1.0}), 0.0);
}

TEST(CountDeepWalls, WithoutSearchRecordsThereIsNothingToCount) {
    FrozenLayerJob job;
    job.m_dGeomTolerance = 0.5;
    const qnl::DeepWalls walls = qnl::CountDeepWalls(job);
    EXPECT_EQ(walls.deep, 0);
    EXPECT_EQ(walls.nodes, 0);
    EXPECT_EQ(walls.window, 1.5);
}

}  // namespace
