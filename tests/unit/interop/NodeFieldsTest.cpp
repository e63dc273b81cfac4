#include "interop/NodeFields.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ForeignCells.h"

namespace {

using qnl::interop::FillMissing;
using qnl::interop::ForeignArray;
using qnl::interop::ForeignFaces;
using qnl::interop::NodeValues;
using qnl::interop::SolidMesh;

const double kNothing = std::nan("");

/// A row of tetras that hang together by one corner each, of volumes 1/6, 2/6 and 3/6 mm3; foreign point 0
/// and foreign cell 0 do not belong to the solid. Tetra k has the nodes 3 k to 3 k + 3.
SolidMesh Row() {
    ForeignCells cells({{{9, 9, 9}}, {{0, 0, 0}}});
    cells.Add(5, {0, 1, 0});
    double x = 0.0;
    for (std::int64_t k = 0; k < 3; ++k) {
        const double length = static_cast<double>(k + 1);
        const std::int64_t first = 1 + 3 * k;
        cells.mesh.points.push_back({x, 1.0, 0.0});
        cells.mesh.points.push_back({x, 0.0, 1.0});
        x += length;
        cells.mesh.points.push_back({x, 0.0, 0.0});
        cells.Add(10, {first, first + 3, first + 1, first + 2});
    }
    return cells.Build();
}

TEST(NodeValues, OfPointsFollowTheNodes) {
    const SolidMesh solid = Row();
    ForeignArray array{"u", 2, false, {}};
    for (int point = 0; point < 11; ++point) {
        array.values.push_back(10.0 * point);
        array.values.push_back(10.0 * point + 1.0);
    }
    const std::vector<double> values = NodeValues(array, 1, solid, {});
    ASSERT_EQ(values.size(), 10U);
    for (std::size_t node = 0; node < values.size(); ++node) {
        EXPECT_EQ(values[node], 10.0 * static_cast<double>(node + 1) + 1.0);
    }
}

/// Blocks find the values of their faces by the name and the size of the array; the order of the points is
/// the file's, in which point 9 is in no cell.
TEST(NodeValues, OfCellsTakeThoseOfTheBoundary) {
    ForeignCells cells(CubeCorners());
    cells.mesh.points.insert(cells.mesh.points.begin(), {9.0, 9.0, 9.0});
    const SolidMesh solid = cells.Add(12, {1, 2, 3, 4, 5, 6, 7, 8}).Build();
    const ForeignArray temperature{"T", 1, true, {200.0}};
    const std::vector<ForeignFaces> boundary{
        {{0, 4}, {1, 2, 3, 4}, {{"p", 1, true, {7.0}}, {"T", 1, true, {50.0}}}},
        {{0, 4}, {5, 6, 7, 8}, {{"T", 3, true, {1.0, 2.0, 3.0}}}},
        {{0, 4}, {5, 6, 7, -1}, {{"T", 1, true, {30.0}}}},
        {{0, 4}, {5, 6, 7, 0}, {{"T", 1, true, {30.0}}}},
        {{0, 2}, {5, 6}, {{"T", 1, true, {30.0}}}},
    };
    const std::vector<double> values = NodeValues(temperature, 0, solid, boundary);
    ASSERT_EQ(values.size(), 8U);
    for (std::size_t node = 0; node < 8; ++node) {
        // The slope from the middle, 200, to the face, 50, half a side below it, goes on to the other side.
        EXPECT_DOUBLE_EQ(values[node], node < 4 ? 50.0 : 350.0) << node;
    }
}

TEST(NodeValues, CellsThatAreNotFiniteDoNotCount) {
    const SolidMesh solid = Row();
    const std::vector<double> values =
        NodeValues({"t", 1, true, {-1.0, 100.0, kNothing, INFINITY}}, 0, solid, {});
    EXPECT_DOUBLE_EQ(values[3], 100.0);
    EXPECT_TRUE(std::isnan(values[5]));
    EXPECT_TRUE(std::isnan(values[9]));
}

TEST(FillMissing, SpreadsFromNeighbourToNeighbour) {
    const SolidMesh solid = Row();
    std::vector<double> values(10, kNothing);
    values[1] = 30.0;
    values[2] = 50.0;
    EXPECT_EQ(FillMissing(values, solid), 0);
    EXPECT_EQ(values[1], 30.0);
    EXPECT_EQ(values[2], 50.0);
    for (const std::size_t node : {0U, 3U, 4U, 6U, 9U}) {
        EXPECT_DOUBLE_EQ(values[node], 40.0) << node;
    }
}

/// Node 3 lies between a cell with three known values of mean 20 and one with one of 80.
TEST(FillMissing, WeighsCellsByTheirKnownValues) {
    const SolidMesh solid = Row();
    std::vector<double> values{10.0, 20.0, 30.0, kNothing, 80.0, kNothing, kNothing, 1.0, 1.0, 1.0};
    EXPECT_EQ(FillMissing(values, solid), 0);
    EXPECT_DOUBLE_EQ(values[3], (3.0 * 20.0 + 80.0) / 4.0);
}

TEST(FillMissing, CountsWhatCannotBeReached) {
    const SolidMesh solid = Row();
    std::vector<double> values(10, kNothing);
    EXPECT_EQ(FillMissing(values, solid), 10);
    values.assign(10, 1.0);
    EXPECT_EQ(FillMissing(values, solid), 0);
}

}  // namespace
