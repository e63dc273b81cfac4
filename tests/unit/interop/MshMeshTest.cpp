#include "interop/MshMesh.h"

#include <gtest/gtest.h>

#include "unit/interop/ForeignFileText.h"

namespace {

using qnl::interop::ForeignSnapshot;
using Cells = std::vector<std::int64_t>;
using Numbers = std::vector<double>;

/// Two tetras of the volumes 1 (groups 5 and 6) and 2 (group 6), and a triangle.
constexpr const char* kNew =
    "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n"
    "$PhysicalNames\n3\n2 1 \"skin\"\n3 5 \"the part\"\n3 6 \"runner\"\n$EndPhysicalNames\n"
    "$Entities\n1 0 1 2\n1 0 0 0 0\n3 0 0 0 1 1 0 1 1 0\n1 0 0 0 4 4 4 1 5 0\n2 0 0 0 4 4 4 1 6 1 "
    "3\n$EndEntities\n"
    "$Nodes\n2 5 10 50\n0 1 0 1\n10\n0 0 0\n3 1 0 4\n20\n30\n40\n50\n4 0 0\n0 4 0\n0 0 4\n4 4 "
    "4.5\n$EndNodes\n"
    "$Elements\n3 3 1 9\n2 3 2 1\n1 10 20 30\n3 1 4 1\n7 10 20 30 40\n3 2 4 1\n9 20 30 40 50\n$EndElements\n"
    "$NodeData\n1\n\"T\"\n$EndNodeData\n";

constexpr const char* kOld =
    "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n"
    "$PhysicalNames\n2\n3 5 \"the part\"\n3 6 \"runner\"\n$EndPhysicalNames\n"
    "$Nodes\n5\n10 0 0 0\n20 4 0 0\n30 0 4 0\n40 0 0 4\n50 4 4 4.5\n$EndNodes\n"
    "$Elements\n3\n1 2 2 1 3 10 20 30\n7 4 2 5 1 10 20 30 40\n9 4 2 6 2 20 30 40 50\n$EndElements\n";

struct MshMesh : testing::Test, ForeignFileText {
    ForeignSnapshot Read(const std::string& text) const { return ReadFirst("m.msh", text); }
    std::string RefusalOf(const std::string& text) const { return Refusal("m.msh", text); }
};

TEST_F(MshMesh, ReadsBothForms) {
    for (const char* text : {kNew, kOld}) {
        const ForeignSnapshot mesh = Read(text);
        EXPECT_EQ(mesh.mesh.cellTypes, (std::vector<int>{10, 10}));
        EXPECT_EQ(mesh.mesh.nodes, (Cells{0, 1, 2, 3, 1, 2, 3, 4}));
        EXPECT_EQ(mesh.mesh.points[4], (std::array<double, 3>{4.0, 4.0, 4.5}));
        EXPECT_EQ(ArrayOf(mesh, "NodeId").values, (Numbers{10, 20, 30, 40, 50}));
        EXPECT_EQ(ArrayOf(mesh, "CellEntityIds").values, (Numbers{1, 2}));
        EXPECT_EQ(ArrayOf(mesh, "PhysicalIds").values, (Numbers{5, 6}));
        EXPECT_EQ(mesh.blocks, (std::vector<std::string>{"the part", "runner"}));
        EXPECT_EQ(ArrayOf(mesh, "BlockId").values, (Numbers{0, 1}));
    }
}

TEST_F(MshMesh, GroupsThatOverlapAreSets) {
    const ForeignSnapshot mesh = Read(With(kNew, "4 4 4 1 5 0", "4 4 4 2 5 6 0"));
    EXPECT_TRUE(mesh.blocks.empty());
    ASSERT_EQ(mesh.sets.size(), 2U);
    EXPECT_EQ(mesh.sets[0].cells, (Cells{0}));
    EXPECT_EQ(mesh.sets[1].cells, (Cells{0, 1}));
    const ForeignSnapshot one = Read(With(kOld, "7 4 2 5 1", "7 4 2 0 1"));
    EXPECT_EQ(one.sets.size(), 1U);
    EXPECT_TRUE(one.blocks.empty());
}

TEST_F(MshMesh, KnowsTheElementsOfBothOrders) {
    const std::vector<std::tuple<int, int, int>> types{{4, 10, 4},   {5, 12, 8},   {6, 13, 6},   {7, 14, 5},
                                                       {11, 24, 10}, {12, 29, 27}, {13, 32, 18}, {14, 37, 14},
                                                       {17, 25, 20}, {18, 26, 15}, {19, 27, 13}};
    for (const auto& [number, vtkType, count] : types) {
        std::string text = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n27\n";
        std::string nodes;
        for (int n = 1; n <= 27; ++n) {
            text += std::to_string(n) + " 0 0 " + std::to_string(n) + "\n";
            nodes += n <= count ? " " + std::to_string(n) : "";
        }
        text += "$EndNodes\n$Elements\n1\n1 " + std::to_string(number) + " 0" + nodes + "\n$EndElements\n";
        EXPECT_EQ(Read(text).mesh.cellTypes, (std::vector<int>{vtkType})) << number;
    }
}

TEST_F(MshMesh, TellsWhereAFileEndsTooEarly) {
    for (const std::string& whole :
         {std::string(kNew).substr(0, std::string(kNew).find("$NodeData")), std::string(kOld)}) {
        std::size_t refused = 0;
        std::size_t lines = 0;
        for (std::size_t end = 0; end < whole.size(); end = whole.find('\n', end) + 1, ++lines) {
            refused += RefusalOf(whole.substr(0, end)).empty() ? 0 : 1;
        }
        EXPECT_EQ(refused, lines) << "every line is needed";
    }
    EXPECT_EQ(
        RefusalOf(std::string(kOld).substr(0, std::string(kOld).find("20 4 0 0"))),
        "m.msh, line 11: expected number, x, y and z of a node, found the end of the file; export it anew");
}

TEST_F(MshMesh, RefusesCountsThatDoNotHold) {
    EXPECT_EQ(RefusalOf(With(kOld, "$Nodes\n5", "$Nodes\n4")),
              "m.msh, line 15: expected $EndNodes, as the counts of the section say, found \"50 4 4 4.5\"; "
              "export it "
              "anew");
    EXPECT_NE(RefusalOf(With(kOld, "$Nodes\n5", "$Nodes\n-5")).find("found -5"), std::string::npos);
    EXPECT_NE(RefusalOf(With(kNew, "2 5 10 50", "2 6 10 50")).find("expected 6 nodes"), std::string::npos);
    EXPECT_NE(RefusalOf(With(kNew, "3 3 1 9", "3 4 1 9")).find("expected 4 elements"), std::string::npos);
    EXPECT_NE(RefusalOf(With(kNew, "4 4 4 1 5 0", "4 4 4 9000000000000000000 5 0")).find("physical groups"),
              std::string::npos);
    EXPECT_NE(RefusalOf(With(kOld, "7 4 2 5", "7 4 9000000000000000000 5")).find("tags"), std::string::npos);
}

TEST_F(MshMesh, RefusesNumbersThatCannotBe) {
    EXPECT_NE(RefusalOf(With(kOld, "20 4 0 0", "10 4 0 0")).find("node 10 again"), std::string::npos);
    EXPECT_NE(RefusalOf(With(kOld, "9 4 2 6", "7 4 2 6")).find("element 7 again"), std::string::npos);
    EXPECT_NE(RefusalOf(With(kNew, "30 40 50\n", "30 40 60\n")).find("element 9 names node 60"),
              std::string::npos);
    EXPECT_NE(RefusalOf(With(kNew, "30 40 50\n", "30 40\n")).find("expected 4 nodes"), std::string::npos);
    EXPECT_NE(RefusalOf(With(kNew, "0 4 0", "0 four 0")).find("a coordinate, found \"four\""),
              std::string::npos);
    EXPECT_EQ(RefusalOf(With(kOld, "7 4 2 5", "7 29 2 5")),
              "m.msh, line 20: expected tetrahedra, hexahedra, prisms or pyramids of first or second order, "
              "found an "
              "element of type 29; save the mesh with order 1 or 2");
}

TEST_F(MshMesh, RefusesOtherForms) {
    EXPECT_EQ(
        RefusalOf(With(kNew, "4.1 0", "4.1 1")),
        "m.msh, line 2: expected the text form, 0, found \"1\"; write it anew: gmsh FILE.msh -save -format "
        "msh41 -o text.msh");
    EXPECT_NE(RefusalOf(With(kNew, "4.1 0", "4.0 0")).find("version 4.1 or 2"), std::string::npos);
    EXPECT_NE(RefusalOf("hello\n").find("expected $MeshFormat"), std::string::npos);
    EXPECT_NE(RefusalOf(With(With(kOld, "7 4 2", "7 2 2"), "9 4 2", "9 2 2")).find("this is no solid mesh"),
              std::string::npos);
}

}  // namespace
