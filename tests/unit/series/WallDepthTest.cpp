#include "series/WallDepth.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "job/EntryRoutine.h"
#include "support/CapturedOutput.h"
#include "support_apps/BoxProject.h"

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
    qnl::profile::PassElementMesh mesh{{faces.data(), 2}, {cells.data(), 2}};
};

TEST_F(DepthSpanTest, IsTheRangeOfDepthsWhateverTheOrder) {
    const std::array<int, 4> ids{3, 2, 4, 1};
    EXPECT_DOUBLE_EQ(qnl::series::DepthSpan(mesh, {ids.data(), 4}, {0.0, 0.0, 1.0}), 3.0);
    EXPECT_DOUBLE_EQ(qnl::series::DepthSpan(mesh, {ids.data(), 4}, {0.0, 0.0, -1.0}), 3.0);
    EXPECT_DOUBLE_EQ(qnl::series::DepthSpan(mesh, {ids.data(), 4}, {1.0, 0.0, 0.0}), 3.0);
    EXPECT_DOUBLE_EQ(qnl::series::DepthSpan(mesh, {ids.data(), 4}, {0.6, 0.8, 0.0}), 5.0);
}

TEST_F(DepthSpanTest, OneElementOrNoneSpansNothing) {
    const std::array<int, 1> ids{4};
    EXPECT_EQ(qnl::series::DepthSpan(mesh, {ids.data(), 1}, {0.0, 0.0, 1.0}), 0.0);
    EXPECT_EQ(qnl::series::DepthSpan(mesh, {ids.data(), 0}, {0.0, 0.0, 1.0}), 0.0);
}

TEST(CountDeepWalls, WithoutSearchRecordsThereIsNothingToCount) {
    FrozenLayerJob job;
    job.m_dGeomTolerance = 0.5;
    const qnl::series::DeepWalls walls = qnl::series::CountDeepWalls(job);
    EXPECT_EQ(walls.deep, 0);
    EXPECT_EQ(walls.nodes, 0);
    EXPECT_EQ(walls.window, 1.5);
}

/// Counts at the end of a run, while the job holds its search.
struct Counting : qnl::RunObserver {
    void RunEnds(const FrozenLayerJob& job) override { walls = qnl::series::CountDeepWalls(job); }
    qnl::series::DeepWalls walls;
};

/// A plate of 12 x 8 x 2 mm and a window of 5 mm. From the rims of its four sides, 20 nodes in each of the
/// three inner layers, rays run 8 mm and more; through the plate and from the other edges less than 5 mm.
TEST(CountDeepWalls, CountsTheNodesOfWallsThatAreThickerThanTheWindow) {
    qnl::testing::BoxMesh box;
    box.fill = qnl::testing::Fill::Hexa;
    box.blocks = {6, 4, 4};
    box.size = {12.0, 8.0, 2.0};
    BoxProject project(box);
    project.SetTolerance(5.0 / 3.0);
    const auto one = [](const qnl::kernel::Point&) { return 1.0; };
    project.AddTime(0, 1.0F, one, one);
    std::array<std::string, 6> words{project.File("box1.k4f"), project.Folder(), "box", "4", "1", "x"};
    std::array<char*, words.size() + 1> pointers{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        pointers[i] = words[i].data();
    }
    Counting observer;
    qnl::RunOptions options;
    options.mode = qnl::Mode::Corrected;
    options.observer = &observer;
    const CapturedOutput quiet;
    qnl::job::RunFrozenLayer(static_cast<int>(words.size()), pointers.data(), options);
    EXPECT_EQ(observer.walls.nodes, 130);
    EXPECT_EQ(observer.walls.deep, 60);
    EXPECT_DOUBLE_EQ(observer.walls.window, 5.0);
}

}  // namespace
