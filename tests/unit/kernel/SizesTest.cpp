#include <gtest/gtest.h>

#include <cmath>

#include "kernel/mesh/CellTetras.h"
#include "kernel/mesh/CellVolumes.h"
#include "kernel/mesh/EntityRecords.h"
#include "kernel/mesh/MeshFault.h"
#include "kernel/mesh/MeshSizes.h"
#include "kernel/mesh/NodeClasses.h"
#include "kernel/topology/BoundaryGraph.h"
#include "support/MeshBuilder.h"

namespace {

using qnl::kernel::BoundaryFace;
using qnl::kernel::CellType;
using qnl::kernel::MeshData;
using qnl::testing::BuildBox;
using qnl::testing::Fill;
using qnl::testing::SingleCell;

// All faces of all cells; for a single cell these are its boundary.
std::vector<BoundaryFace> AllFaces(const MeshData& mesh) {
    std::vector<BoundaryFace> faces;
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        const qnl::kernel::CellShape& shape = mesh.Shape(cell);
        for (int f = 0; f < shape.faces; ++f) {
            faces.push_back({cell, static_cast<std::uint8_t>(f),
                             shape.faceCorners[static_cast<std::size_t>(f)],
                             qnl::kernel::FaceNodes(shape, mesh.Corners(cell), f)});
        }
    }
    return faces;
}

std::string TurnFault(MeshData mesh) {
    std::vector<double> volumes;
    try {
        qnl::kernel::TurnNegativeCells(mesh, volumes);
    } catch (const qnl::kernel::MeshFault& fault) {
        return fault.what();
    }
    return "no fault";
}

struct ShapeCase {
    CellType type;
    double volume;
    double area;
    double meanEdge;
};

const double kRoot2 = std::sqrt(2.0);
const double kRoot3 = std::sqrt(3.0);
// Pyramid: sides of height sqrt(1 + 1/4) over edges of 1, slant edges of sqrt(1 + 1/2).
const ShapeCase kShapeCases[] = {
    {CellType::Tetra, 1.0 / 6.0, 1.5 + kRoot3 / 2.0, (3.0 + 3.0 * kRoot2) / 6.0},
    {CellType::Hexa, 1.0, 6.0, 1.0},
    {CellType::Wedge, 0.5, 3.0 + kRoot2, (7.0 + 2.0 * kRoot2) / 9.0},
    {CellType::Pyramid, 1.0 / 3.0, 1.0 + 2.0 * std::sqrt(1.25), (4.0 + 4.0 * std::sqrt(1.5)) / 8.0},
};

class SingleCellSizes : public testing::TestWithParam<ShapeCase> {};

TEST_P(SingleCellSizes, AreThoseComputedByHand) {
    const ShapeCase& expected = GetParam();
    const MeshData mesh = SingleCell(expected.type);
    const std::vector<BoundaryFace> faces = AllFaces(mesh);
    EXPECT_NEAR(qnl::kernel::CellVolume(mesh, 0), expected.volume, 1e-15);
    EXPECT_NEAR(qnl::kernel::PartArea(mesh, faces), expected.area, 1e-14);
    EXPECT_NEAR(qnl::kernel::MeanEdgeLength(qnl::kernel::BoundaryGraph(faces, mesh.Nodes()), mesh.points),
                expected.meanEdge, 1e-15);
}

TEST_P(SingleCellSizes, FacesPointOutward) {
    const MeshData mesh = SingleCell(GetParam().type);
    const qnl::kernel::Point middle = qnl::kernel::CornerAverage(
        mesh.Nodes(), [&](int c) { return mesh.points[static_cast<std::size_t>(mesh.Corners(0)[c])]; });
    for (const BoundaryFace& face : AllFaces(mesh)) {
        const auto point = [&](std::size_t c) {
            return mesh.points[static_cast<std::size_t>(face.nodes[c])];
        };
        EXPECT_GT(qnl::kernel::TetraVolume(middle, point(0), point(1), point(2)), 0.0) << int{face.localFace};
    }
}

TEST_P(SingleCellSizes, ACellOfNegativeVolumeIsTurned) {
    const MeshData positive = SingleCell(GetParam().type);
    MeshData mesh = positive;
    std::vector<double> volumes;
    qnl::kernel::TurnedCells turned = qnl::kernel::TurnNegativeCells(mesh, volumes);
    EXPECT_EQ(turned.wedges + turned.others, 0);
    EXPECT_EQ(mesh.connectivity, positive.connectivity);
    for (qnl::kernel::Point& point : mesh.points) {
        point[0] = -point[0];
    }
    turned = qnl::kernel::TurnNegativeCells(mesh, volumes);
    const bool wedge = GetParam().type == CellType::Wedge;
    EXPECT_EQ(turned.wedges, wedge ? 1 : 0);
    EXPECT_EQ(turned.others, wedge ? 0 : 1);
    EXPECT_NEAR(volumes.front(), GetParam().volume, 1e-15);
    EXPECT_NEAR(qnl::kernel::CellVolume(mesh, 0), GetParam().volume, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(EachShape, SingleCellSizes, testing::ValuesIn(kShapeCases));

TEST(TurnedCells, ExchangeTheStatedCorners) {
    const std::pair<CellType, std::vector<int>> expected[] = {
        {CellType::Tetra, {0, 1, 3, 2}},
        {CellType::Hexa, {4, 5, 6, 7, 0, 1, 2, 3}},
        {CellType::Wedge, {3, 4, 5, 0, 1, 2}},
        {CellType::Pyramid, {0, 3, 2, 1, 4}},
    };
    for (const auto& [type, corners] : expected) {
        MeshData mesh = SingleCell(type);
        for (qnl::kernel::Point& point : mesh.points) {
            point[2] = -point[2];
        }
        std::vector<double> volumes;
        qnl::kernel::TurnNegativeCells(mesh, volumes);
        EXPECT_EQ(mesh.connectivity, corners) << mesh.Shape(0).name;
    }
}

TEST(TurnedCells, ZeroVolumeIsAFault) {
    MeshData mesh = SingleCell(CellType::Tetra);
    qnl::testing::Append(mesh, SingleCell(CellType::Hexa));
    for (std::size_t i = 4; i < mesh.points.size(); ++i) {
        mesh.points[i][1] = 0.0;
    }
    EXPECT_EQ(TurnFault(mesh), "cell 2 has zero volume");
}

TEST(TurnedCells, AVolumeBeyondTheNumbersIsAFault) {
    MeshData mesh = SingleCell(CellType::Tetra);
    for (qnl::kernel::Point& point : mesh.points) {
        point = {point[0] * 1e200, point[1] * 1e200, point[2] * 1e200};
    }
    EXPECT_EQ(TurnFault(mesh), "cell 1 has no finite volume");
}

class BoxSizes : public testing::TestWithParam<Fill> {};

TEST_P(BoxSizes, VolumesFillTheBox) {
    qnl::testing::BoxMesh box;
    box.fill = GetParam();
    box.blocks = {8, 3, 2};
    box.size = {4.0, 3.0, 2.0};
    box.jiggle = 0.2;
    box.shuffled = true;
    MeshData mesh = BuildBox(box);
    std::vector<double> volumes;
    const qnl::kernel::TurnedCells turned = qnl::kernel::TurnNegativeCells(mesh, volumes);
    EXPECT_EQ(turned.wedges + turned.others, 0);
    EXPECT_NEAR(qnl::kernel::PartVolume(mesh, volumes), 24.0, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(EachFill, BoxSizes,
                         testing::Values(Fill::Tetra, Fill::Hexa, Fill::Wedge, Fill::Pyramid, Fill::Mixed));

TEST(Sizes, OnlyThePartCounts) {
    MeshData mesh = SingleCell(CellType::Hexa);
    qnl::testing::Append(mesh, SingleCell(CellType::Tetra));
    mesh.regions = {1, 0};
    std::vector<double> volumes;
    qnl::kernel::TurnNegativeCells(mesh, volumes);
    EXPECT_NEAR(qnl::kernel::PartVolume(mesh, volumes), 1.0 / 6.0, 1e-15);
    EXPECT_NEAR(qnl::kernel::PartArea(mesh, AllFaces(mesh)), 1.5 + kRoot3 / 2.0, 1e-14);
}

TEST(Sizes, BoxCoversEveryPointMaximaFirst) {
    const std::array<double, 6> box = qnl::kernel::BoundingBox({{1, -2, 3}, {-4, 5, 6}, {0, 0, -7}});
    EXPECT_EQ(box, (std::array<double, 6>{1, 5, 6, -4, -2, -7}));
}

TEST(SplitFace, TakesTheDiagonalOfTheSmallestNode) {
    const int quads[4][4] = {{1, 7, 5, 9}, {9, 1, 7, 5}, {5, 9, 1, 7}, {7, 5, 9, 1}};
    for (const auto& quad : quads) {
        const qnl::kernel::FaceTriangles split = qnl::kernel::SplitFace(quad, 4);
        ASSERT_EQ(split.count, 2);
        EXPECT_EQ(split.nodes[0], (std::array<int, 3>{1, 7, 5}));
        EXPECT_EQ(split.nodes[1], (std::array<int, 3>{1, 5, 9}));
    }
}

TEST(NodeClasses, PartWinsThenSpecialThenRunner) {
    // Four tetras in a row, each sharing one node with the next: special, part, special, runner.
    MeshData mesh;
    mesh.points.resize(14);
    mesh.cellTypes = {10, 10, 10, 10};
    mesh.regions = {2, 0, 2, 1};
    mesh.offsets = {0, 4, 8, 12, 16};
    mesh.connectivity = {0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 12};
    int lonely = 0;
    const std::vector<int> classes = qnl::kernel::NodeClasses(mesh, lonely);
    EXPECT_EQ(classes, (std::vector<int>{-1, -1, -1, 1, 1, 1, 1, -1, -1, -1, 0, 0, 0, 0}));
    EXPECT_EQ(lonely, 1);
    EXPECT_EQ(qnl::kernel::RunnerCells(mesh), (std::vector<int>{0, 1, 0, 1, 1}));
}

TEST(NodeClasses, StandByLabel) {
    MeshData mesh = SingleCell(CellType::Tetra);
    mesh.labels = {7, 2, 9, 4};
    const qnl::kernel::LabelArrays arrays = qnl::kernel::ArraysByLabel(mesh, {1, -1, 0, 1});
    const auto entries = [](const auto& array) {
        std::vector<int> values;
        for (std::size_t i = 0; i < array.Size(); ++i) {
            values.push_back(array[i]);
        }
        return values;
    };
    EXPECT_EQ(entries(arrays.isPart), (std::vector<int>{0, 0, 0, 0, 1, 0, 0, 1, 0, 0}));
    EXPECT_EQ(entries(arrays.nodeClass), (std::vector<int>{0, 0, -1, 0, 1, 0, 0, 1, 0, 0}));
    EXPECT_EQ(entries(arrays.nodeIndex), (std::vector<int>{0, 0, 2, 0, 4, 0, 0, 1, 0, 3}));
    mesh.labels.clear();
    EXPECT_EQ(entries(qnl::kernel::ArraysByLabel(mesh, {1, -1, 0, 1}).nodeIndex),
              (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(EntityRecords, HoldListsBoxesAndMiddles) {
    MeshData mesh = SingleCell(CellType::Pyramid);
    qnl::testing::Append(mesh, SingleCell(CellType::Tetra));
    const qnl::kernel::EntityRecords cells = qnl::kernel::CellRecords(mesh);
    ASSERT_EQ(cells.records.size(), 3u);
    EXPECT_EQ(cells.records[0].nNode, 0);
    EXPECT_EQ(cells.records[0].nodes, nullptr);
    const CellRecord& tetra = cells.records[2];
    EXPECT_EQ(tetra.nNode, 4);
    EXPECT_EQ((std::vector<int>(tetra.nodes + 1, tetra.nodes + 5)), (std::vector<int>{6, 7, 8, 9}));
    const qnl::kernel::EntityRecords faces = qnl::kernel::FaceRecords(mesh.points, AllFaces(mesh));
    ASSERT_EQ(faces.records.size(), 10u);
    const SurfaceRecord& side = faces.records[3];  // pyramid (1, 2, 4)
    EXPECT_EQ(side.nNode, 3);
    EXPECT_EQ((std::vector<int>(side.nodes + 1, side.nodes + 4)), (std::vector<int>{2, 3, 5}));
    EXPECT_EQ(side.boxMin[0], 0.5);
    EXPECT_EQ(side.boxMax[0], 1.0);
    EXPECT_EQ(side.boxMin[1], 0.0);
    EXPECT_EQ(side.boxMax[1], 1.0);
    EXPECT_EQ(side.boxMin[2], 0.0);
    EXPECT_EQ(side.boxMax[2], 1.0);
    EXPECT_EQ(side.zMiddle, 0.5);
}

}  // namespace
