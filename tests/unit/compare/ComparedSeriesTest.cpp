#include "compare/ComparedSeries.h"

#include <gtest/gtest.h>

#include "ComparisonSample.h"
#include "support_apps/Refusal.h"
#include "support_apps/SeriesFixture.h"

namespace {

using qnl::compare::CheckSameSurface;
using qnl::compare::ComparedSeries;
using qnl::compare::FindComparedFiles;
using qnl::compare::ReadComparedSeries;
using ComparedSeriesTest = SeriesFixture;

struct SameSurfaceTest : testing::Test, ComparisonSample {
    std::string Complaint() const {
        return Refusal([&] { CheckSameSurface(sides); });
    }
};

TEST_F(ComparedSeriesTest, AWordStandsForASeriesOrForOneTime) {
    EXPECT_EQ(FindComparedFiles(project.Folder()).times.size(), 3U);
    EXPECT_EQ(FindComparedFiles(project.File("box1.fzr")).times.size(), 3U);
    const qnl::series::SeriesFiles own = FindComparedFiles(project.File("box1_002.fzr"));
    ASSERT_EQ(own.times.size(), 1U);
    EXPECT_EQ(own.times[0].time.index, 2);
    EXPECT_NE(Refusal([&] { FindComparedFiles(project.File("box1.thk")); }), "not refused");
}

TEST_F(ComparedSeriesTest, HoldsTheResultsOnTheSurface) {
    const ComparedSeries side = ReadComparedSeries(project.Folder());
    EXPECT_EQ(side.material, "pp.toml");
    ASSERT_EQ(side.results.items.size(), 1U);
    for (std::size_t i = 0; i < side.surface.Nodes(); ++i) {
        const float x = side.surface.points[i][0];
        EXPECT_EQ(side.results.hasResult[0][i], x > 0.0F ? 1 : 0);
        EXPECT_TRUE(!(x > 0.0F) || side.results.items[0].values[0][i] == 40.0F + x);
    }
}

TEST_F(SameSurfaceTest, TheSameNodesAreTaken) {
    EXPECT_EQ(Complaint(), "not refused");
    sides[1].surface.points[2][0] += 2e-5F;
    EXPECT_EQ(Complaint(), "not refused");
}

TEST_F(SameSurfaceTest, OtherNodesAreRefused) {
    sides[1].surface.nodes.push_back(4);
    EXPECT_EQ(Complaint(),
              "part.hdf and part.hdf are different meshes: A has 3 surface nodes, B 4; compare results that "
              "were made on one mesh");
}

TEST_F(SameSurfaceTest, OtherLabelsAreRefused) {
    sides[1].surface.labels[1] = 14;
    EXPECT_EQ(
        Complaint(),
        "part.hdf and part.hdf are different meshes: surface node number 2 has the label 12 in A, 14 in "
        "B; compare results that were made on one mesh");
}

TEST_F(SameSurfaceTest, OtherPlacesAreRefused) {
    sides[1].surface.points[2][0] += 1e-3F;
    EXPECT_EQ(
        Complaint(),
        "part.hdf and part.hdf are different meshes: node 13 stands at 3, 0, 0.25 mm in A, at 3.001, 0, "
        "0.25 mm in B; compare results that were made on one mesh");
}

}  // namespace
