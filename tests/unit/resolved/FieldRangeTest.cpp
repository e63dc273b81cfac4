#include "profile/resolved/FieldRange.h"

#include <gtest/gtest.h>

#include <cmath>

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
    EXPECT_TRUE(std::isinf(RangeOf(mesh, values).lowest));
    EXPECT_TRUE(std::isinf(RangeOf(mesh, values).highest));
}

}  // namespace
}  // namespace qnl::profile
