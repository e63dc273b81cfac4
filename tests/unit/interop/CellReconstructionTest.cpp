#include "interop/CellReconstruction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "ForeignCells.h"
#include "support/RecordedMesh.h"

namespace {

using qnl::interop::BoundaryValue;
using qnl::interop::ReconstructAtNodes;
using qnl::interop::SolidMesh;
using qnl::kernel::Point;

/// Boxes of 1 x 1 mm in a row along x, of the given lengths; four nodes at each x, the lower ones first.
SolidMesh Row(const std::vector<double>& lengths) {
    ForeignCells cells({});
    double x = 0.0;
    const auto addPoints = [&] {
        for (const double z : {0.0, 1.0}) {
            cells.mesh.points.push_back({x, 0.0, z});
            cells.mesh.points.push_back({x, 1.0, z});
        }
    };
    addPoints();
    for (std::int64_t k = 0; k < static_cast<std::int64_t>(lengths.size()); ++k) {
        x += lengths[static_cast<std::size_t>(k)];
        addPoints();
        const std::int64_t n = 4 * k;
        cells.Add(12, {n, n + 4, n + 5, n + 1, n + 2, n + 6, n + 7, n + 3});
    }
    return cells.Build();
}

BoundaryValue FrontFace(double value) {
    return {{0, 1, 3, 2}, 4, value};
}

/// Value at the four nodes of the given x, which must be equal.
double AtLayer(const std::vector<double>& values, std::size_t layer) {
    for (std::size_t n = 4 * layer; n < 4 * layer + 4; ++n) {
        EXPECT_DOUBLE_EQ(values[n], values[4 * layer]);
    }
    return values[4 * layer];
}

// Middles at 0.5 and 1.5, a slope of 20 a mm.
TEST(CellReconstruction, GoesOnLinearlyToTheSurface) {
    const std::vector<double> values = ReconstructAtNodes({10.0, 30.0}, Row({1.0, 1.0}), {});
    EXPECT_DOUBLE_EQ(AtLayer(values, 0), 0.0);
    EXPECT_DOUBLE_EQ(AtLayer(values, 1), 20.0);
    EXPECT_DOUBLE_EQ(AtLayer(values, 2), 40.0);
}

// Slope of the first cell: (1 * 20 / 1 + -0.5 * -5 / 0.25) / 2 = 15, so 17.5 and 20 at the joint.
TEST(CellReconstruction, TakesTheValuesOfTheBoundary) {
    const std::vector<double> values = ReconstructAtNodes({10.0, 30.0}, Row({1.0, 1.0}), {FrontFace(5.0)});
    EXPECT_DOUBLE_EQ(AtLayer(values, 0), 5.0);
    EXPECT_DOUBLE_EQ(AtLayer(values, 1), 18.75);
    EXPECT_DOUBLE_EQ(AtLayer(values, 2), 40.0);
}

TEST(CellReconstruction, TakesFacesThatRepeatTheirCellAsTheyAre) {
    const std::vector<double> values = ReconstructAtNodes({10.0, 30.0}, Row({1.0, 1.0}), {FrontFace(10.0)});
    EXPECT_DOUBLE_EQ(AtLayer(values, 0), 10.0);
    EXPECT_DOUBLE_EQ(AtLayer(values, 1), 20.0) << "the slope does not know of the face";
}

// A box of 2 x 1 x 1 mm: the front of 1 mm2, the side y = 0 of 2 mm2.
TEST(CellReconstruction, WeighsFacesByTheirArea) {
    const BoundaryValue side{{0, 4, 6, 2}, 4, 20.0};
    const BoundaryValue repeating{{0, 4, 6, 2}, 4, 10.0};
    const SolidMesh solid = Row({2.0});
    const std::vector<double> both = ReconstructAtNodes({10.0}, solid, {FrontFace(5.0), side});
    EXPECT_DOUBLE_EQ(both[0], (1.0 * 5.0 + 2.0 * 20.0) / 3.0);
    EXPECT_DOUBLE_EQ(both[1], 5.0);
    EXPECT_DOUBLE_EQ(both[4], 20.0);
    const std::vector<double> one = ReconstructAtNodes({10.0}, solid, {FrontFace(5.0), repeating});
    EXPECT_DOUBLE_EQ(one[0], 5.0) << "a wall without flux does not hold an edge";
    EXPECT_DOUBLE_EQ(one[4], 10.0);
}

TEST(CellReconstruction, PassesOverFacesWithoutCellOrValue) {
    const BoundaryValue across{{0, 1, 7, 6}, 4, 99.0};
    const std::vector<double> values = ReconstructAtNodes(
        {10.0, 30.0}, Row({1.0, 1.0}), {{{0, 1, 11, 10}, 4, 99.0}, FrontFace(std::nan(""))});
    EXPECT_DOUBLE_EQ(AtLayer(values, 0), 0.0);
    const std::vector<double> inside = ReconstructAtNodes({10.0, 30.0}, Row({1.0, 1.0}), {across});
    EXPECT_DOUBLE_EQ(inside[0], 99.0) << "any corners of one cell count as its face";
}

TEST(CellReconstruction, LeavesCellsWithoutValueOut) {
    const std::vector<double> values =
        ReconstructAtNodes({10.0, std::nan(""), 50.0}, Row({1.0, 1.0, 1.0}), {});
    EXPECT_DOUBLE_EQ(AtLayer(values, 0), 10.0) << "its only neighbour is missing";
    EXPECT_DOUBLE_EQ(AtLayer(values, 1), 10.0);
    EXPECT_DOUBLE_EQ(AtLayer(values, 2), 50.0);
    EXPECT_TRUE(std::isnan(ReconstructAtNodes({std::nan("")}, Row({1.0}), {})[0]));
}

SolidMesh Plate(qnl::testing::Fill fill, int through) {
    SolidMesh solid;
    solid.mesh = qnl::testing::JiggledPlate(fill, through, 2 * through);
    solid.cellSource.resize(static_cast<std::size_t>(solid.mesh.Cells()));
    std::iota(solid.cellSource.begin(), solid.cellSource.end(), 0);
    return solid;
}

/// Largest error at nodes that `counts` says yes to, of a field given by its values in the middles of the
/// cells.
template <typename Field, typename Counts>
double LargestError(const SolidMesh& solid, const Field& field, const Counts& counts) {
    std::vector<double> cells;
    for (int cell = 0; cell < solid.mesh.Cells(); ++cell) {
        const int corners = solid.mesh.Shape(cell).corners;
        Point middle{};
        for (int c = 0; c < corners; ++c) {
            const Point& p = solid.mesh.points[static_cast<std::size_t>(solid.mesh.Corners(cell)[c])];
            middle = {middle[0] + p[0] / corners, middle[1] + p[1] / corners, middle[2] + p[2] / corners};
        }
        cells.push_back(field(middle));
    }
    const std::vector<double> nodes = ReconstructAtNodes(cells, solid, {});
    double largest = 0.0;
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        const Point& p = solid.mesh.points[n];
        largest = counts(p) ? std::max(largest, std::fabs(nodes[n] - field(p))) : largest;
    }
    return largest;
}

bool Everywhere(const Point& /*place*/) {
    return true;
}

TEST(CellReconstruction, MeetsLinearFieldsAtEveryNode) {
    const auto linear = [](const Point& p) { return 100.0 + 3.0 * p[0] - 7.0 * p[1] + 11.0 * p[2]; };
    for (const auto& [name, fill] : qnl::testing::kAllFills) {
        SCOPED_TRACE(name);
        EXPECT_LT(LargestError(Plate(fill, 4), linear, Everywhere), 1e-9);
    }
}

// Half the cell size leaves a quarter of the error.
TEST(CellReconstruction, IsOfSecondOrder) {
    const auto smooth = [](const Point& p) { return 140.0 - 90.0 * std::cos(3.14159265 * (p[2] - 1.0)); };
    const auto inside = [](const Point& p) { return p[2] > 0.4 && p[2] < 1.6; };
    for (const auto& [name, fill] : qnl::testing::kAllFills) {
        SCOPED_TRACE(name);
        const double coarse = LargestError(Plate(fill, 8), smooth, inside);
        const double fine = LargestError(Plate(fill, 16), smooth, inside);
        EXPECT_LT(fine, coarse / 3.0);
        EXPECT_LT(fine, 5.0);
    }
}

// A front between two cells does not make its neighbours hotter than any cell.
TEST(CellReconstruction, KeepsWithinTheCellsInside) {
    const auto front = [](const Point& p) { return p[2] < 0.5 ? 50.0 : 230.0; };
    const SolidMesh solid = Plate(qnl::testing::Fill::Hexa, 8);
    std::vector<double> cells;
    for (int cell = 0; cell < solid.mesh.Cells(); ++cell) {
        cells.push_back(front(solid.mesh.points[static_cast<std::size_t>(solid.mesh.Corners(cell)[0])]));
    }
    const std::vector<double> nodes = ReconstructAtNodes(cells, solid, {});
    const auto width = [&](std::size_t axis) {
        double widest = 0.0;
        for (const Point& p : solid.mesh.points) {
            widest = std::max(widest, p[axis]);
        }
        return widest;
    };
    const Point most{width(0), width(1), width(2)};
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        const Point& p = solid.mesh.points[n];
        const bool inside =
            p[0] > 0.0 && p[0] < most[0] && p[1] > 0.0 && p[1] < most[1] && p[2] > 0.0 && p[2] < most[2];
        if (inside) {
            EXPECT_LE(nodes[n], 230.0);
            EXPECT_GE(nodes[n], 50.0);
        }
    }
}

}  // namespace
