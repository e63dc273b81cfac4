#include "series/SurfaceRays.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "support_apps/BoxProject.h"

namespace {

using qnl::kernel::Point;
using qnl::series::DepthProfile;

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

struct RaysTest : testing::Test {
    void Open(BoxProject::Normals normals) {
        project_.AddTime(
            0, 1.0F, [](const Point& place) { return 100.0 + 10.0 * place[2]; },
            [](const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : kNothing; }, normals);
        series_ = project_.Series();
        opened_ = std::make_unique<qnl::series::OpenedProject>(series_);
        surface_ = qnl::series::SurfaceOf(*opened_);
        rays_ = qnl::series::TraceSurfaceRays(*opened_, surface_);
    }
    std::size_t At(const Point& place) const {
        return static_cast<std::size_t>(
            surface_.numberOfNode[static_cast<std::size_t>(project_.Label(place))]);
    }
    DepthProfile Sorted(std::size_t node) const {
        return qnl::series::ElementsByDepth(*opened_, rays_.elements[node], rays_.inward[node]);
    }

    BoxProject project_{Cubes()};
    qnl::series::SeriesFiles series_;
    std::unique_ptr<qnl::series::OpenedProject> opened_;
    qnl::series::Surface surface_;
    qnl::series::SurfaceRays rays_;
};

TEST_F(RaysTest, RunStraightThroughAFlatWall) {
    Open(BoxProject::Normals::Raw);
    EXPECT_EQ(surface_.Nodes(), 42U);
    const std::size_t top = At({2.0, 1.0, 2.0});
    EXPECT_EQ(rays_.inward[top].x, 0.0);
    EXPECT_EQ(rays_.inward[top].y, 0.0);
    EXPECT_EQ(rays_.inward[top].z, -1.0);
    EXPECT_NEAR(rays_.wall[top], 2.0, 1e-6);
    EXPECT_NEAR(rays_.wall[At({0.0, 1.0, 1.0})], 4.0, 1e-6);
}

TEST_F(RaysTest, LeanFromEdgesByTheAngleOfTheirFaces) {
    Open(BoxProject::Normals::Raw);
    const std::size_t edge = At({2.0, 0.0, 2.0});
    EXPECT_NEAR(rays_.inward[edge].y, std::sqrt(0.5), 1e-9);
    EXPECT_NEAR(rays_.inward[edge].z, -std::sqrt(0.5), 1e-9);
    EXPECT_NEAR(rays_.wall[edge], 2.0 * std::sqrt(2.0), 1e-6);
}

TEST_F(RaysTest, FollowTheSmoothedNormalsOfARunThatSmoothsThem) {
    Open(BoxProject::Normals::Smoothed);
    const qnl::Vector3& leaning = rays_.inward[At({1.0, 1.0, 2.0})];
    EXPECT_GT(leaning.x, 0.01);
    EXPECT_NEAR(leaning.y, 0.0, 1e-12);
    EXPECT_NEAR(Length(leaning), 1.0, 1e-12);
    EXPECT_NEAR(rays_.inward[At({2.0, 1.0, 2.0})].x, 0.0, 1e-12);
}

/// The ray runs along the edge that four cubes share, through two layers of them.
TEST_F(RaysTest, ElementsAreSortedByTheDepthOfTheirMiddles) {
    Open(BoxProject::Normals::Raw);
    const DepthProfile sorted = Sorted(At({2.0, 1.0, 2.0}));
    ASSERT_EQ(sorted.Count(), 16);
    constexpr std::array<double, 4> kDepths{0.0, 0.5, 1.5, 2.0};
    const int faces = opened_->Job().m_nSurfaces;
    for (int j = 1; j <= 16; ++j) {
        const auto place = static_cast<std::size_t>(j);
        EXPECT_NEAR(sorted.Below(place), kDepths[(place - 1) / 4], 1e-12);
        EXPECT_EQ(sorted.elements[place] <= faces, j <= 4 || j > 12);
    }
}

TEST_F(RaysTest, ElementsAtOneDepthBecomeOneSample) {
    Open(BoxProject::Normals::Raw);
    opened_->LoadTemperatures(series_.times[0].stageFile);
    std::vector<double> temperatures;
    const DepthProfile merged =
        qnl::series::SamplesByDepth(*opened_, Sorted(At({2.0, 1.0, 2.0})), temperatures);
    ASSERT_EQ(merged.Count(), 4);
    constexpr std::array<double, 4> kDepths{0.0, 0.5, 1.5, 2.0};
    for (std::size_t j = 1; j <= 4; ++j) {
        EXPECT_EQ(merged.Below(j), kDepths[j - 1]);
    }
    EXPECT_EQ(temperatures, (std::vector<double>{0.0, 120.0, 115.0, 105.0, 100.0}));
}

TEST_F(RaysTest, ResultsOfBothKindsInOneSeriesAreRefused) {
    Open(BoxProject::Normals::Smoothed);
    const auto one = [](const Point&) { return 1.0; };
    project_.AddTime(1, 0.5F, one, [](const Point& p) { return OnSurfaceOfCubes(p) ? 1.0 : kNothing; });
    EXPECT_THROW(project_.Series(), qnl::project::InputProblem);
    EXPECT_FALSE(qnl::series::FindSeriesFiles({{project_.File("box1_001.fzr")}, true}).view.smoothedNormals);
    EXPECT_TRUE(qnl::series::FindSeriesFiles({{project_.File("box1.fzr")}, true}).view.smoothedNormals);
}

}  // namespace
