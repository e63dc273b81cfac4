#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <utility>

#include "demo/DemoMesh.h"
#include "kernel/mesh/CellVolumes.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl {
namespace {

constexpr double kPi = 3.14159265358979323846;

struct Shape {
    demo::DemoShape shape;
    const char* name;
    int euler;  ///< vertices - edges + faces of the boundary
};

std::ostream& operator<<(std::ostream& out, const Shape& shape) {
    return out << shape.name;
}

/// Sizes with two, four and six layers through the wall.
constexpr int kSizes[] = {2500, 20000, 60000};

class DemoMeshTest : public ::testing::TestWithParam<Shape> {};

double Volume(const kernel::MeshData& mesh) {
    double sum = 0.0;
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        sum += kernel::CellVolume(mesh, cell);
    }
    return sum;
}

/// A ring is a prism over the difference of two regular polygons.
double RingVolume(const demo::DemoPart& part) {
    const double sides = part.blocks[0];
    const double inner = part.edge * (sides / (2.0 * kPi) - 0.5 * part.layers);
    const double outer = inner + 2.0;
    return 0.5 * sides * std::sin(2.0 * kPi / sides) * (outer * outer - inner * inner) * part.edge *
           part.blocks[1];
}

/// Outer box less the cavity, plus the ribs inside the cavity, less the two crossings counted twice.
double CoverVolume(const demo::DemoPart& part) {
    const double length = part.edge * part.blocks[0];
    const double width = part.edge * part.blocks[1];
    const double height = part.edge * part.blocks[2];
    const double ribHeight = part.edge * (part.bricks.back().high[2] - part.layers);
    const double inside = (length - 4.0) * (width - 4.0);
    const double ribs = 2.0 * 1.0 * (width - 4.0) + 1.0 * (length - 4.0) - 2.0 * 1.0 * 1.0;
    return length * width * height - inside * (height - 2.0) + ribs * ribHeight;
}

double ClosedVolume(const demo::DemoPart& part) {
    switch (part.shape) {
        case demo::DemoShape::Plate:
            return part.edge * part.blocks[0] * part.edge * part.blocks[1] * 2.0;
        case demo::DemoShape::Cover:
            return CoverVolume(part);
        case demo::DemoShape::Ring:
            return RingVolume(part);
    }
    return 0.0;
}

/// Owners of every edge of the boundary.
std::map<std::pair<int, int>, int> BoundaryEdges(const std::vector<kernel::BoundaryFace>& boundary) {
    std::map<std::pair<int, int>, int> edges;
    for (const kernel::BoundaryFace& face : boundary) {
        for (std::size_t c = 0; c < 3; ++c) {
            edges[std::minmax(face.nodes[c], face.nodes[(c + 1) % 3])] += 1;
        }
    }
    return edges;
}

int Euler(const std::vector<kernel::BoundaryFace>& boundary) {
    std::set<int> nodes;
    for (const kernel::BoundaryFace& face : boundary) {
        nodes.insert(face.nodes.begin(), face.nodes.begin() + 3);
    }
    return static_cast<int>(nodes.size()) - static_cast<int>(BoundaryEdges(boundary).size()) +
           static_cast<int>(boundary.size());
}

TEST_P(DemoMeshTest, HasAboutTheCellsAskedFor) {
    for (const int cells : kSizes) {
        EXPECT_NEAR(demo::MakeDemoMesh(GetParam().shape, cells).Cells(), cells, 0.2 * cells) << cells;
    }
    EXPECT_NEAR(demo::MakeDemoMesh(GetParam().shape, 200000).Cells(), 200000, 5000);
}

TEST_P(DemoMeshTest, LayersGrowWithTheCount) {
    EXPECT_EQ(demo::PlanDemoPart(GetParam().shape, 2500).layers, 2);
    EXPECT_EQ(demo::PlanDemoPart(GetParam().shape, 18000).layers, 4);
    EXPECT_EQ(demo::PlanDemoPart(GetParam().shape, 55000).layers, 6);
    EXPECT_EQ(demo::PlanDemoPart(GetParam().shape, demo::kMostDemoCells).layers, 6);
}

TEST_P(DemoMeshTest, FillsTheClosedVolumeWithPositiveCells) {
    for (const int cells : kSizes) {
        const demo::DemoPart part = demo::PlanDemoPart(GetParam().shape, cells);
        const kernel::MeshData mesh = demo::MeshDemoPart(part);
        double smallest = 1e30;
        for (int cell = 0; cell < mesh.Cells(); ++cell) {
            smallest = std::min(smallest, kernel::CellVolume(mesh, cell));
        }
        const double block = std::pow(part.edge, 3);
        EXPECT_GT(smallest, 0.02 * block) << cells;
        EXPECT_NEAR(Volume(mesh), ClosedVolume(part), 1e-9 * ClosedVolume(part)) << cells;
    }
}

TEST_P(DemoMeshTest, BoundaryIsClosedAndOfTheRightEulerNumber) {
    for (const int cells : kSizes) {
        const std::vector<kernel::BoundaryFace> boundary =
            kernel::BuildFaceTopology(demo::MakeDemoMesh(GetParam().shape, cells)).boundary;
        for (const auto& [edge, faces] : BoundaryEdges(boundary)) {
            ASSERT_EQ(faces, 2) << cells << ": edge " << edge.first << " " << edge.second;
        }
        EXPECT_EQ(Euler(boundary), GetParam().euler) << cells;
    }
}

TEST_P(DemoMeshTest, PlacesOfTheGridAndBack) {
    const demo::DemoPart part = demo::PlanDemoPart(GetParam().shape, 20000);
    const kernel::Point grid{1.25, 3.5, 0.75};
    const kernel::Point back = part.GridPoint(part.Place(grid));
    for (std::size_t a = part.Closed() ? 1 : 0; a < 3; ++a) {
        EXPECT_NEAR(back[a], grid[a], 1e-12) << a;
    }
}

TEST_P(DemoMeshTest, ShufflingKeepsThePart) {
    const kernel::MeshData ordered = demo::MakeDemoMesh(GetParam().shape, 2500);
    kernel::MeshData mesh = ordered;
    demo::ShuffleTetras(mesh, 7);
    EXPECT_NE(mesh.connectivity, ordered.connectivity);
    EXPECT_NE(mesh.points, ordered.points);
    std::multiset<std::array<kernel::Point, 4>> before;
    std::multiset<std::array<kernel::Point, 4>> after;
    const auto collect = [](const kernel::MeshData& from,
                            std::multiset<std::array<kernel::Point, 4>>& cells) {
        for (int cell = 0; cell < from.Cells(); ++cell) {
            std::array<kernel::Point, 4> corners{};
            for (std::size_t c = 0; c < 4; ++c) {
                corners[c] = from.points[static_cast<std::size_t>(from.Corners(cell)[c])];
            }
            cells.insert(corners);
        }
    };
    collect(ordered, before);
    collect(mesh, after);
    EXPECT_EQ(before, after);
}

TEST(DemoPartTest, RefusesCountsOutOfRange) {
    for (const int cells : {0, demo::kFewestDemoCells - 1, demo::kMostDemoCells + 1}) {
        EXPECT_THROW(demo::PlanDemoPart(demo::DemoShape::Plate, cells), std::invalid_argument) << cells;
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, DemoMeshTest,
                         ::testing::Values(Shape{demo::DemoShape::Plate, "plate", 2},
                                           Shape{demo::DemoShape::Cover, "cover", 2},
                                           Shape{demo::DemoShape::Ring, "ring", 0}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace qnl
