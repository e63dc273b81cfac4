#include "imports/ImportMeshData.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using qnl::imports::AddMeshData;
using qnl::imports::ImportedCase;
using qnl::imports::ImportRequest;
using qnl::interop::ForeignSnapshot;

/// Two cells of a foreign mesh, its third and first one, with four nodes from foreign points 3 to 0; 10 mm
/// long.
struct ImportMeshData : testing::Test {
    ImportMeshData() {
        imported.solid.mesh.points = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}, {0.0, 10.0, 0.0}, {0.0, 0.0, 10.0}};
        imported.solid.pointSource = {3, 2, 1, 0};
        imported.solid.cellSource = {2, 0};
        snapshot.file = "part.vtu";
    }

    void Labels(std::vector<double> values) {
        snapshot.arrays.push_back({"NodeId", 1, false, std::move(values)});
        AddMeshData(request, snapshot, imported);
    }
    std::string Problem() {
        try {
            AddMeshData(request, snapshot, imported);
        } catch (const qnl::interop::ForeignProblem& problem) {
            return problem.what();
        }
        return "none";
    }

    ImportRequest request;
    ForeignSnapshot snapshot;
    ImportedCase imported;
};

TEST_F(ImportMeshData, LabelsFollowTheNodes) {
    Labels({40.0, 30.0, 20.0, 10.0});
    EXPECT_EQ(imported.solid.mesh.labels, (std::vector<int>{10, 20, 30, 40}));
    EXPECT_TRUE(imported.warnings.empty());
}

TEST_F(ImportMeshData, UnusableLabelsAreLeftOutWithAWarning) {
    const std::vector<std::vector<double>> unusable{
        {1.0, 2.0, 2.0, 3.0}, {0.0, 1.0, 2.0, 3.0}, {1.5, 2.0, 3.0, 4.0}, {1.0, 2.0, 3.0, 100001.0}};
    for (const std::vector<double>& labels : unusable) {
        imported.warnings.clear();
        snapshot.arrays.clear();
        Labels(labels);
        EXPECT_TRUE(imported.solid.mesh.labels.empty());
        EXPECT_EQ(imported.warnings.size(), 1U);
    }
    snapshot.arrays.clear();
    Labels({1.0, 2.0, 3.0, 100000.0});
    EXPECT_EQ(imported.solid.mesh.labels.front(), 100000);
}

TEST_F(ImportMeshData, RegionsOfOurOwnAreTakenAsTheyAre) {
    snapshot.arrays = {{"Region", 1, true, {2.0, 7.0, 0.0}}};
    AddMeshData(request, snapshot, imported);
    EXPECT_EQ(imported.solid.mesh.regions, (std::vector<std::int8_t>{0, 2}));
    EXPECT_EQ(imported.regionArray, "Region");
}

TEST_F(ImportMeshData, AnArrayOfThatNameWithOtherNumbersIsNoneOfOurs) {
    snapshot.arrays = {{"Region", 1, true, {3.0, 7.0, 0.0}}};
    AddMeshData(request, snapshot, imported);
    EXPECT_TRUE(imported.solid.mesh.regions.empty());
    EXPECT_EQ(imported.regionArray, "");
}

TEST_F(ImportMeshData, NamedRegionsAreMapped) {
    snapshot.arrays = {{"zone", 1, true, {5.0, 9.0, 4.0}}};
    request.regionArray = "zone";
    request.runner = {5};
    AddMeshData(request, snapshot, imported);
    EXPECT_EQ(imported.solid.mesh.regions, (std::vector<std::int8_t>{0, 1}));
    imported.solid.mesh.regions.clear();
    request.runner = {9};
    EXPECT_EQ(Problem(), "region 9 of --runner is not in array \"zone\"; there are 4, 5");
}

TEST_F(ImportMeshData, APartWithoutCellsIsRefused) {
    snapshot.arrays = {{"zone", 1, true, {5.0, 9.0, 4.0}}};
    request.regionArray = "zone";
    request.runner = {5};
    request.special = {4};
    EXPECT_NE(Problem().find("no cell is left for the part"), std::string::npos);
}

TEST_F(ImportMeshData, ARegionArrayOnPointsIsRefused) {
    snapshot.arrays = {{"zone", 1, false, {5.0, 9.0, 4.0, 1.0}}};
    request.regionArray = "zone";
    EXPECT_EQ(Problem().find("part.vtu holds no cell array \"zone\" of 1 component; "), 0U);
}

TEST_F(ImportMeshData, TheToleranceIsHalfTheWall) {
    request.wall = 3.0;
    AddMeshData(request, snapshot, imported);
    EXPECT_EQ(imported.solid.mesh.geomTolerance, 1.5);
}

TEST_F(ImportMeshData, APartThatLooksLikeMetresIsWarnedOf) {
    imported.solid.mesh.points[1][0] = 0.1;
    imported.solid.mesh.points[2][1] = 2.9;
    imported.solid.mesh.points[3][2] = 0.1;
    AddMeshData(request, snapshot, imported);
    ASSERT_EQ(imported.warnings.size(), 1U);
    EXPECT_NE(imported.warnings[0].find("--length-unit m"), std::string::npos);
}

}  // namespace
