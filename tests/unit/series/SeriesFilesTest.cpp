#include "series/ResultSeries.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>

#include "BoxProject.h"
#include "Refusal.h"
#include "platform/Faults.h"
#include "results/ResultFile.h"
#include "series/SurfaceSeries.h"

namespace {

using qnl::kernel::Point;
using qnl::series::FindResultSeries;
using qnl::series::ResultSeries;

std::vector<int> Indices(const ResultSeries& series) {
    std::vector<int> indices;
    for (const qnl::series::SeriesTime& time : series.times) {
        indices.push_back(time.time.index);
    }
    return indices;
}

/// Results at 3, 1 and 2 s under the indices 0, 1 and 2.
struct ResultSeriesTest : testing::Test {
    ResultSeriesTest() {
        const auto one = [](const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : std::nan(""); };
        for (const auto& [index, seconds] : {std::pair(0, 3.0F), {1, 1.0F}, {2, 2.0F}}) {
            project.AddTime(index, seconds, one, one);
        }
    }
    BoxProject project{Cubes()};
};

TEST_F(ResultSeriesTest, OneWordStandsForAllTimes) {
    for (const std::string& word : {project.Folder(), project.File("box1.fzr"), project.File("box1_002.fzr"),
                                    project.File("box1_001.k4f")}) {
        EXPECT_EQ(Indices(FindResultSeries({{word}, false})), (std::vector<int>{1, 2, 0})) << word;
    }
}

TEST_F(ResultSeriesTest, SeveralWordsStandForJustThoseTimes) {
    const std::vector<std::string> two{project.File("box1.fzr"), project.File("box1_001.fzr")};
    EXPECT_EQ(Indices(FindResultSeries({two, false})), (std::vector<int>{1, 0}));
    EXPECT_EQ(Indices(FindResultSeries({{two[1]}, true})), std::vector<int>{1});
}

TEST_F(ResultSeriesTest, WithoutAllTimesTheBaseTimeComesLast) {
    std::filesystem::remove(project.File("box1_002.k4f"));
    const ResultSeries series = FindResultSeries(project.Words());
    EXPECT_FALSE(series.realTimes);
    EXPECT_STREQ(series.AxisUnit(), "");
    EXPECT_EQ(Indices(series), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(series.times[2].axis, 3.0);
}

TEST_F(ResultSeriesTest, WhatIsNoSeriesIsRefused) {
    const std::string other = project.Folder() + "/Analysis/Run2/box2.fzr";
    EXPECT_NE(Refusal([&] {
                  FindResultSeries({{project.File("box1.fzr"), other}, false});
              }).find("belongs to another run or stage"),
              std::string::npos);
    EXPECT_NE(Refusal([&] {
                  FindResultSeries({{project.File("box1.run")}, false});
              }).find("neither a frozen-layer result"),
              std::string::npos);
    EXPECT_NE(Refusal([&] {
                  FindResultSeries({{project.File("box1.fzr"), project.File("box1_007.fzr")}, false});
              }).find("box1_007.fzr: no frozen-layer result is there"),
              std::string::npos);
    std::filesystem::remove(project.File("box1.fzr"));
    std::filesystem::remove(project.File("box1_001.fzr"));
    std::filesystem::remove(project.File("box1_002.fzr"));
    EXPECT_NE(Refusal([&] { FindResultSeries(project.Words()); }).find("make it first with frozenlayer run"),
              std::string::npos);
}

TEST_F(ResultSeriesTest, ADamagedResultIsRefusedByName) {
    std::filesystem::resize_file(project.File("box1_001.fzr"), 100);
    EXPECT_EQ(Refusal([&] { FindResultSeries(project.Words()); }).find(project.File("box1_001.fzr")), 0U);
    qnl::TakeFaults();
}

TEST_F(ResultSeriesTest, AResultOfAnotherMeshIsRefused) {
    qnl::results::StageResult other;
    other.nodeIds = {46};
    other.maxNode = 1;
    other.items = {{1, "Frozen_Ratio", "--", qnl::results::kNodeData, 0.0F, 0.0F, {1.0F}}};
    ASSERT_TRUE(qnl::results::WriteStageResult(project.File("box1_002.fzr"), other));
    const ResultSeries series = FindResultSeries(project.Words());
    const qnl::series::OpenedProject opened(series);
    EXPECT_NE(Refusal([&] {
                  qnl::series::ReadSurfaceSeries(series, opened, qnl::series::SurfaceOf(opened));
              }).find("box1_002.fzr: node 46 is not on the surface of the mesh"),
              std::string::npos);
}

TEST(SurfaceOf, SplitsFacesIntoTrianglesThatFaceOutwards) {
    const BoxProject project(Cubes());
    const auto one = [](const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : std::nan(""); };
    project.AddTime(0, 1.0F, one, one);
    const qnl::series::OpenedProject opened(FindResultSeries(project.Words()));
    const qnl::series::Surface surface = qnl::series::SurfaceOf(opened);
    EXPECT_EQ(surface.Nodes(), 42U);
    EXPECT_EQ(surface.triangles.size(), 80U);
    double volume = 0.0;
    for (const auto& triangle : surface.triangles) {
        std::array<std::array<double, 3>, 3> p{};
        for (std::size_t c = 0; c < 3; ++c) {
            for (std::size_t a = 0; a < 3; ++a) {
                p[c][a] = static_cast<double>(surface.points[static_cast<std::size_t>(triangle[c])][a]);
            }
        }
        volume += (p[0][0] * (p[1][1] * p[2][2] - p[1][2] * p[2][1]) +
                   p[0][1] * (p[1][2] * p[2][0] - p[1][0] * p[2][2]) +
                   p[0][2] * (p[1][0] * p[2][1] - p[1][1] * p[2][0])) /
                  6.0;
    }
    EXPECT_NEAR(volume, 16.0, 1e-9);
}

TEST(Label, CarriesTheUnitInBrackets) {
    EXPECT_EQ(qnl::series::Label("Frozen ratio", "%"), "Frozen ratio [%]");
    EXPECT_EQ(qnl::series::Label("Packing index", ""), "Packing index");
}

}  // namespace
