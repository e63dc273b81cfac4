#include "series/SeriesFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "platform/Faults.h"
#include "results/ResultFile.h"
#include "series/SurfaceResults.h"
#include "support_apps/BoxProject.h"
#include "support_apps/Refusal.h"

namespace {

using qnl::kernel::Point;
using qnl::series::FindSeriesFiles;
using qnl::series::SeriesFiles;

std::vector<int> Indices(const SeriesFiles& series) {
    std::vector<int> indices;
    for (const qnl::series::SeriesTime& time : series.times) {
        indices.push_back(time.time.index);
    }
    return indices;
}

/// Results at 3, 1 and 2 s under the indices 0, 1 and 2.
struct SeriesFilesTest : testing::Test {
    SeriesFilesTest() {
        const auto one = [](const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : std::nan(""); };
        for (const auto& [index, seconds] : {std::pair(0, 3.0F), {1, 1.0F}, {2, 2.0F}}) {
            project.AddTime(index, seconds, one, one);
        }
    }
    BoxProject project{Cubes()};
};

TEST_F(SeriesFilesTest, OneWordStandsForAllTimes) {
    for (const std::string& word : {project.Folder(), project.File("box1.fzr"), project.File("box1_002.fzr"),
                                    project.File("box1_001.k4f")}) {
        EXPECT_EQ(Indices(FindSeriesFiles({{word}, false})), (std::vector<int>{1, 2, 0})) << word;
    }
}

TEST_F(SeriesFilesTest, SeveralWordsStandForJustThoseTimes) {
    const std::vector<std::string> two{project.File("box1.fzr"), project.File("box1_001.fzr")};
    EXPECT_EQ(Indices(FindSeriesFiles({two, false})), (std::vector<int>{1, 0}));
    EXPECT_EQ(Indices(FindSeriesFiles({{two[1]}, true})), std::vector<int>{1});
}

TEST_F(SeriesFilesTest, WithoutAllTimesTheBaseTimeComesLast) {
    std::filesystem::remove(project.File("box1_002.k4f"));
    const SeriesFiles series = project.Series();
    EXPECT_FALSE(series.realTimes);
    EXPECT_STREQ(series.AxisUnit(), "");
    EXPECT_EQ(Indices(series), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(series.times[2].axis, 3.0);
}

TEST_F(SeriesFilesTest, WhatIsNoSeriesIsRefused) {
    const std::string other = project.Folder() + "/Analysis/Run2/box2.fzr";
    EXPECT_NE(Refusal([&] {
                  FindSeriesFiles({{project.File("box1.fzr"), other}, false});
              }).find("belongs to another run or stage"),
              std::string::npos);
    EXPECT_NE(Refusal([&] {
                  FindSeriesFiles({{project.File("box1.run")}, false});
              }).find("neither a frozen-layer result"),
              std::string::npos);
    EXPECT_NE(Refusal([&] {
                  FindSeriesFiles({{project.File("box1.fzr"), project.File("box1_007.fzr")}, false});
              }).find("box1_007.fzr: no frozen-layer result is there"),
              std::string::npos);
    std::filesystem::remove(project.File("box1.fzr"));
    std::filesystem::remove(project.File("box1_001.fzr"));
    std::filesystem::remove(project.File("box1_002.fzr"));
    EXPECT_NE(Refusal([&] { project.Series(); }).find("make it first with frozenlayer run"),
              std::string::npos);
}

TEST_F(SeriesFilesTest, ADamagedResultIsRefusedByName) {
    std::filesystem::resize_file(project.File("box1_001.fzr"), 100);
    EXPECT_EQ(Refusal([&] { project.Series(); }).find(project.File("box1_001.fzr")), 0U);
    qnl::TakeFaults();
}

TEST_F(SeriesFilesTest, AResultOfAnotherMeshIsRefused) {
    qnl::results::StageResult other;
    other.nodeIds = {46};
    other.maxNode = 1;
    other.items = {{1, "Frozen_Ratio", "--", qnl::results::kNodeData, 0.0F, 0.0F, {1.0F}}};
    ASSERT_TRUE(qnl::results::WriteStageResult(project.File("box1_002.fzr"), other));
    const SeriesFiles series = project.Series();
    const qnl::series::OpenedProject opened(series);
    EXPECT_NE(Refusal([&] {
                  qnl::series::ResultsOnSurface(series, qnl::series::ReadResults(series), opened,
                                                qnl::series::SurfaceOf(opened));
              }).find("box1_002.fzr: node 46 is not on the surface of the mesh"),
              std::string::npos);
}

}  // namespace
