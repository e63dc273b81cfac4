#include "interop/JoinedBlocks.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using qnl::interop::ForeignSnapshot;
using qnl::interop::JoinBlocks;

/// Two blocks of one line each, (0)-(1) and (1)-(2), whose values differ where they touch, the second first
/// in the file; a face of each at that place.
ForeignSnapshot TwoBlocks() {
    ForeignSnapshot snapshot;
    snapshot.mesh.points = {{1.0, 0.0, 0.0}, {2.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {1.0, -0.0, 0.0}};
    snapshot.mesh.cellTypes = {3, 3};
    snapshot.mesh.offsets = {0, 2, 4};
    snapshot.mesh.nodes = {0, 1, 2, 3};
    snapshot.blocks = {"mould", "part"};
    snapshot.arrays = {{"T", 1, false, {50.0, 40.0, 230.0, 90.0}}, {"BlockId", 1, true, {0.0, 1.0}}};
    snapshot.boundary = {{{0, 1}, {0}, {}, "mould"}, {{0, 1}, {0}, {}, "part"}, {{0, 1}, {1}, {}, ""}};
    return snapshot;
}

void KeepPart(ForeignSnapshot& snapshot) {
    snapshot.mesh.cellTypes = {3};
    snapshot.mesh.offsets = {0, 2};
    snapshot.mesh.nodes = {2, 3};
    snapshot.arrays[1].values = {1.0};
}

TEST(JoinBlocks, APartAloneHasItsOwnValuesAndBoundaries) {
    ForeignSnapshot snapshot = TwoBlocks();
    KeepPart(snapshot);
    JoinBlocks(snapshot);
    EXPECT_EQ(snapshot.mesh.points.size(), 2U);
    EXPECT_EQ(snapshot.mesh.nodes, (std::vector<std::int64_t>{0, 1}));
    EXPECT_EQ(snapshot.arrays[0].values, (std::vector<double>{230.0, 90.0}));
    ASSERT_EQ(snapshot.boundary.size(), 2U);
    EXPECT_EQ(snapshot.boundary[0].block, "part");
    EXPECT_EQ(snapshot.boundary[0].points, std::vector<std::int64_t>{1});
    EXPECT_EQ(snapshot.boundary[1].points, std::vector<std::int64_t>{-1});
}

TEST(JoinBlocks, BothShareThePointsOfEqualCoordinates) {
    ForeignSnapshot snapshot = TwoBlocks();
    JoinBlocks(snapshot);
    EXPECT_EQ(snapshot.mesh.points.size(), 3U);
    EXPECT_EQ(snapshot.mesh.nodes, (std::vector<std::int64_t>{0, 1, 2, 0}));
    EXPECT_EQ(snapshot.arrays[0].values, (std::vector<double>{50.0, 40.0, 230.0}));
    EXPECT_EQ(snapshot.boundary.size(), 3U);
}

TEST(JoinBlocks, VectorsStayWhole) {
    ForeignSnapshot snapshot = TwoBlocks();
    KeepPart(snapshot);
    snapshot.arrays[0] = {"U", 2, false, {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0}};
    JoinBlocks(snapshot);
    EXPECT_EQ(snapshot.arrays[0].values, (std::vector<double>{4.0, 5.0, 6.0, 7.0}));
}

TEST(JoinBlocks, WithoutNamesOrWithWrongCoordinatesNothingIsDone) {
    ForeignSnapshot unnamed = TwoBlocks();
    unnamed.blocks.clear();
    JoinBlocks(unnamed);
    EXPECT_EQ(unnamed.mesh.points.size(), 4U);
    ForeignSnapshot wrong = TwoBlocks();
    wrong.mesh.points[0][2] = std::numeric_limits<double>::quiet_NaN();
    JoinBlocks(wrong);
    EXPECT_EQ(wrong.mesh.points.size(), 4U);
}

}  // namespace
