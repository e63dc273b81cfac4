#include "interop/SolidMesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ForeignCells.h"

namespace {

using qnl::interop::SolidMesh;

constexpr int kTriangle = 5;
constexpr int kTetra = 10;
constexpr int kVoxel = 11;
constexpr int kHexa = 12;
constexpr int kWedge = 13;
constexpr int kPyramid = 14;
constexpr int kQuadraticTetra = 24;
constexpr int kPolyhedron = 42;

bool Mentions(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(BuildSolidMesh, KeepsLinearCellsWithTheirVolumes) {
    ForeignCells cells(CubeCorners());
    cells.mesh.points.push_back({0.5, 0.5, 2.0});
    cells.Add(kHexa, {0, 1, 2, 3, 4, 5, 6, 7}).Add(kPyramid, {4, 5, 6, 7, 8});
    const SolidMesh solid = cells.Build();
    ASSERT_EQ(solid.mesh.Cells(), 2);
    EXPECT_EQ(solid.mesh.Shape(0).type, qnl::kernel::CellType::Hexa);
    EXPECT_EQ(solid.mesh.Shape(1).type, qnl::kernel::CellType::Pyramid);
    EXPECT_NEAR(solid.volumes[0], 1.0, 1e-14);
    EXPECT_NEAR(solid.volumes[1], 1.0 / 3.0, 1e-14);
    EXPECT_EQ(solid.madeLinear, 0);
    EXPECT_EQ(solid.leftOut, 0);
}

TEST(BuildSolidMesh, ScalesToMillimetres) {
    ForeignCells cells(CubeCorners());
    cells.Add(kHexa, {0, 1, 2, 3, 4, 5, 6, 7});
    const SolidMesh solid = cells.Build(25.4);
    EXPECT_EQ(solid.mesh.points[6], (qnl::kernel::Point{25.4, 25.4, 25.4}));
    EXPECT_NEAR(solid.volumes[0], 25.4 * 25.4 * 25.4, 1e-9);
}

/// Point 3 belongs to a triangle only; the others move up and keep their order.
TEST(BuildSolidMesh, LeavesOutSurfaceCellsAndTheNodesThatOnlyTheyUse) {
    ForeignCells cells({{{0, 0, 1}}, {{0, 1, 0}}, {{1, 0, 0}}, {{5, 5, 5}}, {{0, 0, 0}}});
    cells.Add(kTriangle, {0, 1, 3}).Add(kTetra, {4, 2, 1, 0}).Add(kTriangle, {0, 1, 2});
    const SolidMesh solid = cells.Build();
    EXPECT_EQ(solid.leftOut, 2);
    EXPECT_EQ(solid.cellSource, std::vector<std::int64_t>{1});
    EXPECT_EQ(solid.pointSource, (std::vector<std::int64_t>{0, 1, 2, 4}));
    EXPECT_EQ(std::vector<int>(solid.mesh.Corners(0), solid.mesh.Corners(0) + 4),
              (std::vector<int>{3, 2, 1, 0}));
    EXPECT_NEAR(solid.volumes[0], 1.0 / 6.0, 1e-15);
}

TEST(BuildSolidMesh, QuadraticCellsKeepTheirCornersOnly) {
    ForeignCells cells({{{0, 0, 0}}, {{1, 0, 0}}, {{0, 1, 0}}, {{0, 0, 1}}});
    std::vector<std::int64_t> nodes{0, 1, 2, 3};
    for (int i = 0; i < 6; ++i) {
        cells.mesh.points.push_back({0.5, 0.1 * i, 0.0});
        nodes.push_back(4 + i);
    }
    cells.Add(kQuadraticTetra, nodes);
    const SolidMesh solid = cells.Build();
    EXPECT_EQ(solid.madeLinear, 1);
    EXPECT_EQ(solid.mesh.Nodes(), 4);
    EXPECT_EQ(solid.mesh.Shape(0).type, qnl::kernel::CellType::Tetra);
}

/// A voxel counts its corners along x, then y, then z.
TEST(BuildSolidMesh, VoxelsBecomeHexahedra) {
    std::vector<std::array<double, 3>> points;
    for (int i = 0; i < 8; ++i) {
        points.push_back(
            {static_cast<double>(i % 2), static_cast<double>(i / 2 % 2), static_cast<double>(i / 4)});
    }
    ForeignCells cells(points);
    cells.Add(kVoxel, {0, 1, 2, 3, 4, 5, 6, 7});
    const SolidMesh solid = cells.Build();
    EXPECT_EQ(solid.mesh.Shape(0).type, qnl::kernel::CellType::Hexa);
    EXPECT_NEAR(solid.volumes[0], 1.0, 1e-14);
}

TEST(BuildSolidMesh, TurnsCellsOfNegativeVolume) {
    ForeignCells cells({{{0, 0, 0}}, {{1, 0, 0}}, {{0, 1, 0}}, {{0, 0, 1}}, {{1, 0, 1}}, {{0, 1, 1}}});
    cells.Add(kWedge, {3, 4, 5, 0, 1, 2});
    const SolidMesh solid = cells.Build();
    EXPECT_NEAR(solid.volumes[0], 0.5, 1e-14);
    EXPECT_EQ(solid.mesh.Corners(0)[0], 0);
}

TEST(BuildSolidMesh, RefusesAMeshWithoutVolumeCells) {
    ForeignCells cells(CubeCorners());
    cells.Add(kTriangle, {0, 1, 2}).Add(kTriangle, {0, 2, 3});
    EXPECT_TRUE(Mentions(cells.Refusal(), "part.vtu: this is a surface mesh: none of its 2 cells"));
}

TEST(BuildSolidMesh, RefusesAndCountsWhatHasNoLinearCounterpart) {
    ForeignCells polyhedra(CubeCorners());
    polyhedra.Add(kPolyhedron, {0, 1, 2, 3}).Add(kPolyhedron, {4, 5, 6, 7});
    EXPECT_TRUE(Mentions(polyhedra.Refusal(), "part.vtu holds 2 polyhedra"));
    ForeignCells others(CubeCorners());
    others.Add(kHexa, {0, 1, 2, 3, 4, 5, 6, 7}).Add(15, {0, 1, 2, 3});
    EXPECT_TRUE(Mentions(others.Refusal(), "part.vtu holds 1 cells of VTK type 15"));
}

TEST(BuildSolidMesh, RefusesCornersThatCannotBe) {
    for (const std::vector<std::int64_t>& nodes :
         std::vector<std::vector<std::int64_t>>{{0, 1, 2}, {0, 1, 2, 2}, {0, 1, 2, 8}, {0, 1, 2, -1}}) {
        ForeignCells cells(CubeCorners());
        cells.Add(kTetra, {0, 1, 3, 4}).Add(kTetra, nodes);
        EXPECT_TRUE(Mentions(cells.Refusal(), "part.vtu: cell 2 lacks a corner")) << cells.Refusal();
    }
}

TEST(BuildSolidMesh, RefusesACoordinateThatIsNotFinite) {
    ForeignCells cells(CubeCorners());
    cells.mesh.points[3][1] = std::nan("");
    cells.Add(kTetra, {0, 1, 3, 4});
    EXPECT_TRUE(Mentions(cells.Refusal(), "part.vtu: point 4 has a coordinate that is not finite"));
}

/// A node of no volume cell is not looked at.
TEST(BuildSolidMesh, PassesOverAnUnusedCoordinateThatIsNotFinite) {
    ForeignCells cells(CubeCorners());
    cells.mesh.points[6][2] = std::numeric_limits<double>::infinity();
    cells.Add(kTetra, {0, 1, 3, 4});
    EXPECT_EQ(cells.Refusal(), "");
}

TEST(BuildSolidMesh, RefusesACellWithoutVolume) {
    ForeignCells cells(CubeCorners());
    cells.Add(kTetra, {0, 1, 2, 3});
    EXPECT_TRUE(Mentions(cells.Refusal(), "part.vtu: cell 1 has zero volume"));
}

}  // namespace
