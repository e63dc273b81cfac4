#include "interop/InpMesh.h"

#include <gtest/gtest.h>

#include "unit/interop/ForeignFileText.h"

namespace {

using qnl::interop::ForeignSnapshot;
using Cells = std::vector<std::int64_t>;
using Numbers = std::vector<double>;

constexpr const char* kNodes =
    "*Heading\n a part\n** a comment\n*NODE, NSET=ALL\n10, 0., 0., 0.\n20, 4., 0., 0.\n30, 0., 4.\n40,,, 4.\n"
    "50, 1, 1, -3.5e0\r\n\n*Node Output\n NT\n";
/// Elements 7 and 8.
constexpr const char* kTetras = "*Element, type=c3d4\n7, 10,20,30,40\n8, 20,10,30,\n50\n";

struct InpMesh : testing::Test, ForeignFileText {
    ForeignSnapshot Read(const std::string& text) const { return ReadFirst("m.inp", text); }
    std::string RefusalOf(const std::string& text) const { return Refusal("m.inp", text); }
};

TEST_F(InpMesh, ReadsNodesAndElements) {
    const ForeignSnapshot mesh = Read(std::string(kNodes) + kTetras);
    EXPECT_EQ(mesh.mesh.cellTypes, (std::vector<int>{10, 10}));
    EXPECT_EQ(mesh.mesh.nodes, (Cells{0, 1, 2, 3, 1, 0, 2, 4}));
    EXPECT_EQ(mesh.mesh.points[2], (std::array<double, 3>{0.0, 4.0, 0.0})) << "what is left out is 0";
    EXPECT_EQ(mesh.mesh.points[4], (std::array<double, 3>{1.0, 1.0, -3.5}));
    EXPECT_EQ(ArrayOf(mesh, "NodeId").values, (Numbers{10, 20, 30, 40, 50}));
    EXPECT_EQ(mesh.seconds, std::nullopt);
    EXPECT_TRUE(mesh.blocks.empty());
    EXPECT_TRUE(mesh.sets.empty());
}

TEST_F(InpMesh, KnowsTheSolidElements) {
    const std::vector<std::tuple<const char*, int, int>> types{
        {"C3D4", 10, 4},     {"DC3D4", 10, 4},   {"C3D10", 24, 10}, {"C3D10MT", 24, 10}, {"C3D6", 13, 6},
        {"C3D15", 26, 15},   {"C3D8", 12, 8},    {"C3D8R", 12, 8},  {"C3D8I", 12, 8},    {"DC3D8", 12, 8},
        {"C3D20RT", 25, 20}, {"DC3D20", 25, 20}, {"C3D5", 14, 5},   {"SC8R", 12, 8}};
    std::string nodes = "*NODE\n";
    for (int n = 1; n <= 20; ++n) {
        nodes += std::to_string(n) + ",0,0," + std::to_string(n) + "\n";
    }
    for (const auto& [name, vtkType, count] : types) {
        std::string element = "*ELEMENT, TYPE=" + std::string(name) + "\n1";
        for (int n = 1; n <= count; ++n) {
            element += (n == 16 ? ",\n" : ",") + std::to_string(n);
        }
        const ForeignSnapshot mesh = Read(nodes + element + "\n");
        EXPECT_EQ(mesh.mesh.cellTypes, (std::vector<int>{vtkType})) << name;
        EXPECT_EQ(mesh.mesh.nodes.size(), static_cast<std::size_t>(count)) << name;
    }
}

TEST_F(InpMesh, SetsMayOverlap) {
    const ForeignSnapshot mesh =
        Read(std::string(kNodes) + kTetras +
             "*ELSET, ELSET=hot\n8\n*Elset, elset=\"all of it\", generate\n1, 9, 1\n" +
             "*ELSET, ELSET=odd, GENERATE\n1,9,2\n*ELSET,ELSET=Both\nHOT, "
             "part-1-1.odd,\n*ELSET,ELSET=none,GENERATE\n1,5\n");
    ASSERT_EQ(mesh.sets.size(), 4U);
    EXPECT_EQ(mesh.sets[0].name, "hot");
    EXPECT_EQ(mesh.sets[0].cells, (Cells{1}));
    EXPECT_EQ(mesh.sets[1].name, "all of it");
    EXPECT_EQ(mesh.sets[1].cells, (Cells{0, 1}));
    EXPECT_EQ(mesh.sets[2].cells, (Cells{0}));
    EXPECT_EQ(mesh.sets[3].cells, (Cells{0, 1}));
    EXPECT_TRUE(mesh.blocks.empty());
}

TEST_F(InpMesh, NamesOfTheDefinitionsAreBlocks) {
    const std::string text =
        std::string(kNodes) +
        "*ELEMENT,TYPE=C3D4,ELSET=Part\n7,10,20,30,40\n*ELEMENT,TYPE=C3D4,ELSET=mould\n8,20,10,30,50\n";
    const ForeignSnapshot mesh = Read(text);
    EXPECT_EQ(mesh.blocks, (std::vector<std::string>{"Part", "mould"}));
    EXPECT_EQ(ArrayOf(mesh, "BlockId").values, (Numbers{0, 1}));
    EXPECT_TRUE(mesh.sets.empty());
    const ForeignSnapshot more = Read(text + "*ELSET,ELSET=PART\n8\n");
    EXPECT_TRUE(more.blocks.empty()) << "a name that gets further members tells nothing apart";
    ASSERT_EQ(more.sets.size(), 2U);
    EXPECT_EQ(more.sets[0].cells, (Cells{0, 1}));
}

TEST_F(InpMesh, ElementsWithoutVolumeAreTold) {
    const ForeignSnapshot mesh = Read(std::string(kNodes) + kTetras +
                                      "*ELEMENT, TYPE=S3\n1,10,20,30\n2,10,20,\n40\n*ELSET,ELSET=A\n1,7\n");
    ASSERT_EQ(mesh.warnings.size(), 1U);
    EXPECT_NE(mesh.warnings[0].find("2 elements of type S3, which have no volume, are left out"),
              std::string::npos);
    EXPECT_EQ(mesh.sets[0].cells, (Cells{0}));
}

TEST_F(InpMesh, RefusesWhatIsNotInTheFile) {
    EXPECT_EQ(
        RefusalOf("*INCLUDE, INPUT=mesh.inc\n"),
        "m.inp, line 1: expected the whole mesh in one file, found *INCLUDE; put the included file in its "
        "place, or give that file if it holds the whole mesh");
    EXPECT_NE(RefusalOf("*NODE, INPUT=n.txt\n").find("found INPUT="), std::string::npos);
    EXPECT_NE(RefusalOf("*NGEN\n1,9\n").find("*NGEN"), std::string::npos);
    EXPECT_NE(RefusalOf("*NODE, SYSTEM=C\n1,9\n").find("SYSTEM=C"), std::string::npos);
    EXPECT_NE(RefusalOf("*Instance, name=a\n*Instance, name=b\n").find("a second *INSTANCE"),
              std::string::npos);
    EXPECT_NE(RefusalOf("*NODE\n1,0,0,0\n").find("holds no solid elements"), std::string::npos);
}

TEST_F(InpMesh, RefusesNumbersThatCannotBe) {
    const std::string mesh = std::string(kNodes) + kTetras;
    EXPECT_NE(
        RefusalOf(With(mesh, "20, 4.", "10, 4.")).find("line 6: expected each node once, found node 10"),
        std::string::npos);
    EXPECT_NE(RefusalOf(With(mesh, "8, 20", "7, 20")).find("found element 7 again"), std::string::npos);
    EXPECT_NE(RefusalOf(With(mesh, "30,40", "30,41")).find("element 7 names node 41"), std::string::npos);
    EXPECT_EQ(RefusalOf(With(mesh, "4., 0., 0.", "4., zero")),
              "m.inp, line 6: expected a coordinate, found \"zero\"; export it anew");
    EXPECT_NE(RefusalOf(With(mesh, "50\n", "50, 40\n")).find("found 6 numbers"), std::string::npos);
    EXPECT_NE(RefusalOf(With(mesh, ",\n50\n", "\n")).find("found 4 numbers"), std::string::npos);
    EXPECT_NE(RefusalOf(mesh + "*ELSET,ELSET=A\n9\n").find("defined above, found 9"), std::string::npos);
    EXPECT_NE(RefusalOf(mesh + "*ELSET,ELSET=A\nB\n").find("defined above, found \"B\""), std::string::npos);
    EXPECT_NE(RefusalOf(mesh + "*ELSET,ELSET=A,GENERATE\n1,9,0\n").find("and a step"), std::string::npos);
    EXPECT_EQ(RefusalOf(mesh + "*ELSET,ELSET=A,GENERATE\n1,9223372036854775807,9223372036854775807\n"), "");
    EXPECT_EQ(
        RefusalOf(mesh + "*ELEMENT,TYPE=COH3D8\n9,1,2,3\n10,1,2\n"),
        "m.inp, line 19: expected solid elements such as C3D4, C3D6, C3D8, C3D10 or DC3D8, found 2 of type "
        "\"COH3D8\"; mesh the part with solid elements, or leave these out");
}

}  // namespace
