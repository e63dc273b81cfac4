#include "imports/RegionChoice.h"

#include <gtest/gtest.h>

namespace {

using qnl::imports::ImportRequest;
using qnl::imports::KeepChosenBlocks;
using qnl::interop::ForeignSnapshot;

using Names = std::vector<std::string>;

/// Four tetras of the blocks mould, part, mould, air, with two cell arrays and one of points.
ForeignSnapshot FourCells() {
    ForeignSnapshot snapshot;
    snapshot.file = "a.vtm";
    snapshot.blocks = {"mould", "part", "air"};
    snapshot.mesh.points.resize(7);
    snapshot.mesh.cellTypes = {10, 11, 12, 13};
    snapshot.mesh.offsets = {0, 4, 8, 12, 16};
    snapshot.mesh.nodes = {0, 1, 2, 3, 1, 2, 3, 4, 2, 3, 4, 5, 3, 4, 5, 6};
    snapshot.arrays = {{"BlockId", 1, true, {0, 1, 0, 2}},
                       {"flux", 2, true, {10, 11, 20, 21, 30, 31, 40, 41}},
                       {"T", 1, false, {1, 2, 3, 4, 5, 6, 7}}};
    return snapshot;
}

ForeignSnapshot Kept(const Names& parts, const Names& ignored) {
    ImportRequest request;
    request.parts = parts;
    request.ignored = ignored;
    ForeignSnapshot snapshot = FourCells();
    KeepChosenBlocks(request, snapshot);
    return snapshot;
}

/// What is said of the choice; empty when it is followed.
std::string Refusal(const ImportRequest& request, ForeignSnapshot snapshot) {
    try {
        KeepChosenBlocks(request, snapshot);
        return {};
    } catch (const qnl::interop::ForeignProblem& problem) {
        return problem.what();
    }
}

TEST(RegionChoice, KeepsTheCellsOfThePart) {
    const ForeignSnapshot kept = Kept({"part", "air"}, {});
    EXPECT_EQ(kept.mesh.cellTypes, (std::vector<int>{11, 13}));
    EXPECT_EQ(kept.mesh.offsets, (std::vector<std::int64_t>{0, 4, 8}));
    EXPECT_EQ(kept.mesh.nodes, (std::vector<std::int64_t>{1, 2, 3, 4, 3, 4, 5, 6}));
    EXPECT_EQ(kept.mesh.points.size(), 7U);
    EXPECT_EQ(kept.arrays[0].values, (std::vector<double>{1, 2}));
    EXPECT_EQ(kept.arrays[1].values, (std::vector<double>{20, 21, 40, 41}));
    EXPECT_EQ(kept.arrays[2].values.size(), 7U);
}

TEST(RegionChoice, GoesByTheArrayOfTheCells) {
    ForeignSnapshot snapshot = FourCells();
    snapshot.arrays.push_back({"BlockId", 1, false, {9, 9, 9, 9, 9, 9, 1e9}});
    ImportRequest request;
    request.parts = {"part"};
    KeepChosenBlocks(request, snapshot);
    EXPECT_EQ(snapshot.mesh.cellTypes, (std::vector<int>{11}));
}

TEST(RegionChoice, LeavesTheIgnoredOut) {
    EXPECT_EQ(Kept({}, {"air"}).mesh.cellTypes, (std::vector<int>{10, 11, 12}));
    EXPECT_EQ(Kept({"part", "air"}, {"air"}).mesh.cellTypes, (std::vector<int>{11}));
}

TEST(RegionChoice, IsAskedForWithTheList) {
    EXPECT_EQ(
        Refusal({}, FourCells()),
        "a.vtm has several regions, \"mould\" (2 cells), \"part\" (1 cell), \"air\" (1 cell); say which are "
        "the part with --part NAME,..., or which are not with --ignore NAME,...");
    ImportRequest byArray;
    byArray.regionArray = "BlockId";
    EXPECT_EQ(Refusal(byArray, FourCells()), "") << "a region array is a choice too";
}

TEST(RegionChoice, RefusesWhatIsNotThere) {
    ImportRequest request;
    request.parts = {"Part"};
    EXPECT_NE(
        Refusal(request, FourCells()).find("no region \"Part\" of --part; there are \"mould\" (2 cells)"),
        std::string::npos);
    request.parts = {};
    request.ignored = {"mould", "part", "air"};
    EXPECT_NE(Refusal(request, FourCells()).find("leave no cell"), std::string::npos);
    ForeignSnapshot nameless = FourCells();
    nameless.blocks.clear();
    EXPECT_NE(Refusal(request, nameless).find("no named regions"), std::string::npos);
    EXPECT_EQ(Refusal({}, nameless), "");
}

}  // namespace
