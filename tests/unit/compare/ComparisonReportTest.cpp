#include "compare/ComparisonReport.h"

#include <gtest/gtest.h>

#include <sstream>

#include "ComparisonSample.h"
#include "compare/ComparisonTable.h"
#include "platform/Faults.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::compare::CompareSeries;
using qnl::compare::WriteComparisonTable;

struct ComparisonReportTest : testing::Test, ComparisonSample {
    std::string Report(std::optional<double> tolerance = std::nullopt) const {
        std::ostringstream out;
        qnl::compare::PrintComparison(sides, CompareSeries(sides), tolerance, out);
        return out.str();
    }
    std::string LastLine() const {
        const std::string text = Report();
        return text.substr(text.rfind('\n', text.size() - 2) + 1);
    }
    bool Says(const std::string& line) const { return Report().find(line + "\n") != std::string::npos; }
};

TEST_F(ComparisonReportTest, TellsWhatIsComparedAndHowFarApartItIs) {
    sides[1].files.view.mode = qnl::Mode::Classic;
    sides[1].results.items[0].values[0] = {13.0F, 16.0F, 30.0F};
    EXPECT_EQ(Report(),
              "Differences are B - A, at surface nodes of part.hdf\n"
              "     Result     Stage  Run  Mode       Material  Output times\n"
              "  A  part1.fzr  flow   1    corrected  pp.toml   2, 1 s to 2 s\n"
              "  B  part1.fzr  flow   1    classic    pp.toml   2, 1 s to 2 s\n"
              "\n"
              "Output time 1 s\n"
              "  Item           Unit  Nodes  Largest difference  At node  x [mm]  y [mm]  z [mm]"
              "  Mean magnitude     RMS\n"
              "  Frozen ratio   %         3                  -4       12       1       2       2"
              "          2.3333  2.8868\n"
              "  Packing index  -         3                   0        -       -       -       -"
              "               0       0\n"
              "\n"
              "Output time 2 s\n"
              "  Item           Unit  Nodes  Largest difference  At node  x [mm]  y [mm]  z [mm]"
              "  Mean magnitude  RMS\n"
              "  Frozen ratio   %         3                   0        -       -       -       -"
              "               0    0\n"
              "  Packing index  -         3                   0        -       -       -       -"
              "               0    0\n"
              "\n"
              "A and B differ by at most 4 % (Frozen ratio).\n");
}

TEST_F(ComparisonReportTest, TheSignOfTheLargestDifferenceIsShown) {
    sides[1].results.items[0].values[0] = {10.0F, 20.0F, 32.0F};
    EXPECT_NE(Report().find("  +2       13       3       0    0.25 "), std::string::npos);
}

TEST_F(ComparisonReportTest, EqualResultsAreSaidToBeEqual) {
    EXPECT_EQ(LastLine(), "A and B are equal to the bit.\n");
}

TEST_F(ComparisonReportTest, TheLargestOfEveryUnitClosesTheReport) {
    sides[1].results.items[0].values = {{10.0F, 20.0F, 32.0F}, {37.0F, 50.0F, 60.0F}};
    sides[1].results.items[1].values[1][0] = 0.5F;
    EXPECT_EQ(LastLine(), "A and B differ by at most 3 % (Frozen ratio), 0.25 (Packing index).\n");
}

TEST_F(ComparisonReportTest, WhatOneHasIsCountedAndNamed) {
    sides[0].results.hasResult[0] = {1, 1, 0};
    sides[1].results.items.pop_back();
    sides[1].files.times[1].axis = 3.0;
    sides[1].files.times[1].time.seconds = 3.0;
    EXPECT_TRUE(Says("  1 node only in B: 13"));
    EXPECT_TRUE(Says("  1 item only in A: Packing index"));
    EXPECT_TRUE(Says("1 output time only in A: 2 s"));
    EXPECT_TRUE(Says("1 output time only in B: 3 s"));
    EXPECT_EQ(
        LastLine(),
        "A and B are equal to the bit in what both have; see above for what stands in one of them only.\n");
}

TEST_F(ComparisonReportTest, LongListsAreCutShort) {
    for (auto& side : sides) {
        side.surface.labels = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
        side.surface.points.resize(12);
        side.results.items.clear();
        side.results.hasResult = {std::vector<char>(12, 1), std::vector<char>(12, 1)};
    }
    sides[1].results.hasResult[0].assign(12, 0);
    EXPECT_TRUE(Says("  12 nodes only in A: 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 and 2 more"));
    EXPECT_TRUE(Says("Output time 1 s\n  no node has a result in both"));
}

TEST_F(ComparisonReportTest, WhatIsNoNumberIsCounted) {
    sides[0].results.items[0].values[0] = {kNothing, kNothing, 30.0F};
    sides[1].results.items[0].values[0] = {kNothing, 20.0F, 30.0F};
    EXPECT_TRUE(Says("  Frozen ratio: not a number at 2 nodes, at 1 of them in one result only"));
    EXPECT_EQ(LastLine(), "A and B are equal wherever both have numbers, but not to the bit.\n");
}

TEST_F(ComparisonReportTest, ATimeOfEachIsNamedWhereTheyDiffer) {
    for (auto& side : sides) {
        side.files.times.pop_back();
    }
    sides[1].files.times[0].time.seconds = 7.0;
    EXPECT_TRUE(Says("Output time 1 s of A, 7 s of B"));
}

TEST_F(ComparisonReportTest, TheToleranceIsAnswered) {
    sides[1].results.items[0].values[0][0] = 11.0F;
    EXPECT_NE(Report(1.0).find("\nWithin the tolerance of 1.\n"), std::string::npos);
    EXPECT_NE(Report(0.5).find("\nNot within the tolerance of 0.5.\n"), std::string::npos);
}

TEST_F(ComparisonReportTest, TheTableHasARowAnItemAndTime) {
    sides[0].results.hasResult[0] = {1, 1, 0};
    sides[1].results.items[0].values[0] = {10.25F, kNothing, 30.0F};
    sides[1].results.items[1].name = sides[0].results.items[1].name = "Index, \"packing\"";
    const ScratchFolder folder;
    ASSERT_TRUE(WriteComparisonTable(folder.File("x.csv"), sides, CompareSeries(sides)));
    EXPECT_EQ(folder.Read("x.csv"),
              "A: Time [s],B: Time [s],Item number,Item,Unit,Nodes compared,Largest difference,Node label,"
              "x [mm],y [mm],z [mm],Mean magnitude,RMS,Nodes not finite,Nodes finite in one,Equal to the bit,"
              "Nodes only in A,Nodes only in B\n"
              "1,1,1,Frozen ratio,%,1,0.25,11,0,0,0,0.25,0.25,1,1,0,0,1\n"
              "1,1,11,\"Index, \"\"packing\"\"\",-,2,0,,,,,0,0,0,0,1,0,1\n"
              "2,2,1,Frozen ratio,%,3,0,,,,,0,0,0,0,1,0,0\n"
              "2,2,11,\"Index, \"\"packing\"\"\",-,3,0,,,,,0,0,0,0,1,0,0\n");
}

TEST_F(ComparisonReportTest, ATableThatCannotBeWrittenIsAFault) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    EXPECT_FALSE(WriteComparisonTable(folder.File("none/x.csv"), sides, CompareSeries(sides)));
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

}  // namespace
