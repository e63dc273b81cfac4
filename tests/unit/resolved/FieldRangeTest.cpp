#include "profile/resolved/FieldRange.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "support/RecordedMesh.h"

namespace qnl::profile {
namespace {

using kernel::Point;
using testing::RecordedMesh;

RecordedMesh Cube(int cells) {
    testing::BoxMesh box;
    box.fill = testing::Fill::Hexa;
    box.blocks = {cells, cells, cells};
    return RecordedMesh(testing::BuildBox(box));
}

// Melt at 230 inside, mould at 40 on all sides.
double Quenched(const Point& p) {
    const bool inside =
        std::fmin(std::fmin(p[0], p[1]), p[2]) > 0.0 && std::fmax(std::fmax(p[0], p[1]), p[2]) < 1.0;
    return inside ? 230.0 : 40.0;
}

FieldRange RangeOf(const RecordedMesh& mesh, const std::vector<double>& values) {
    const kernel::RecordMesh view = mesh.View();
    return RangeOfCooling({view.nodes, view.cells}, values.data(), view.nodeCount, view.cellCount);
}

// Two tetras, and a node of neither that stands on both sides of their lists of nodes.
class TwoTetras {
public:
    TwoTetras(const std::array<int, 4>& first, const std::array<int, 4>& second, int loose)
        : lists_{List(first, loose), List(second, loose)} {
        for (std::size_t cell = 1; cell <= 2; ++cell) {
            cells_[cell].nNode = 4;
            cells_[cell].nodes = &lists_[cell - 1][1];
        }
    }

    FieldRange RangeOf(const std::array<double, 6>& values) const {
        std::vector<double> byNode{std::nan("")};
        byNode.insert(byNode.end(), values.begin(), values.end());
        return RangeOfCooling({nullptr, cells_.data()}, byNode.data(), 6, 2);
    }

private:
    using NodeList = std::array<int, 7>;

    static NodeList List(const std::array<int, 4>& n, int loose) {
        return {loose, loose, n[0], n[1], n[2], n[3], loose};
    }

    std::array<NodeList, 2> lists_;
    std::array<CellRecord, 3> cells_{};
};

// Nodes of a cube of four cells a side: the 63rd is its middle, the 64th that beside it.
constexpr std::size_t kMiddle = 63;

TEST(FieldRange, KnowsTheHottestWhereAWholePatchIsAsHot) {
    const RecordedMesh mesh = Cube(4);
    std::vector<double> values = mesh.Values(Quenched);
    EXPECT_EQ(RangeOf(mesh, values).lowest, 40.0);
    EXPECT_EQ(RangeOf(mesh, values).highest, 230.0);
    values[kMiddle + 1] = 230.0 - 0.18;  // a thousandth of the range is 0.19
    EXPECT_EQ(RangeOf(mesh, values).highest, 230.0);
    values[kMiddle + 1] = 230.0 - 0.2;
    EXPECT_TRUE(std::isinf(RangeOf(mesh, values).highest));
}

TEST(FieldRange, DoesNotTakeHotNodesBesideColdOnesForTheTop) {
    const RecordedMesh three = Cube(3);
    EXPECT_TRUE(std::isinf(RangeOf(three, three.Values(Quenched)).highest));
    EXPECT_EQ(RangeOf(three, three.Values(Quenched)).lowest, 40.0);
    const RecordedMesh four = Cube(4);
    EXPECT_TRUE(std::isinf(RangeOf(four, four.Values([](const Point& p) { return p[2]; })).highest));
}

// One node has no cold neighbour, at either end of the numbers and of the lists.
TEST(FieldRange, KnowsTheHottestAroundOneNode) {
    EXPECT_EQ(TwoTetras({1, 2, 3, 4}, {2, 3, 4, 5}, 6).RangeOf({230, 230, 230, 230, 40, 50}).highest, 230.0);
    EXPECT_EQ(TwoTetras({2, 3, 4, 5}, {4, 3, 2, 6}, 1).RangeOf({50, 230, 230, 230, 40, 230}).highest, 230.0);
}

TEST(FieldRange, DoesNotTakeANodeOfNoCellForTheTop) {
    const FieldRange range = TwoTetras({1, 2, 3, 4}, {2, 3, 4, 5}, 6).RangeOf({40, 230, 230, 230, 60, 230});
    EXPECT_EQ(range.lowest, 40.0);
    EXPECT_TRUE(std::isinf(range.highest));
    EXPECT_EQ(TwoTetras({1, 2, 3, 4}, {2, 3, 4, 5}, 6).RangeOf({50, 50, 50, 50, 60, 40}).lowest, 40.0);
}

TEST(FieldRange, IsThatOfAUniformField) {
    const RecordedMesh mesh = Cube(1);
    const FieldRange range = RangeOf(mesh, mesh.Values([](const Point&) { return 70.0; }));
    EXPECT_EQ(range.lowest, 70.0);
    EXPECT_EQ(range.highest, 70.0);
}

TEST(FieldRange, PassesOverMissingValues) {
    const RecordedMesh mesh = Cube(4);
    std::vector<double> values = mesh.Values(Quenched);
    values[1] = std::nan("");
    values[2] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(RangeOf(mesh, values).lowest, 40.0);
    EXPECT_EQ(RangeOf(mesh, values).highest, 230.0);
    values[kMiddle + 1] = std::nan("");
    EXPECT_TRUE(std::isinf(RangeOf(mesh, values).highest)) << "a patch that is not whole shows nothing";
    values.assign(values.size(), std::nan(""));
    EXPECT_EQ(RangeOf(mesh, values).lowest, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(RangeOf(mesh, values).highest, std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace qnl::profile
