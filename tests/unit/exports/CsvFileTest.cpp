#include "exports/CsvFile.h"

#include <gtest/gtest.h>

#include "ExportSample.h"
#include "platform/Faults.h"
#include "support/ScratchFolder.h"

namespace {

TEST(CsvField, IsQuotedWhereItMust) {
    EXPECT_EQ(qnl::exports::CsvField("Frozen ratio [%]"), "Frozen ratio [%]");
    EXPECT_EQ(qnl::exports::CsvField("a,b"), "\"a,b\"");
    EXPECT_EQ(qnl::exports::CsvField("a \"b\""), "\"a \"\"b\"\"\"");
    EXPECT_EQ(qnl::exports::CsvField("a\nb"), "\"a\nb\"");
}

TEST(WriteCsvSurface, ARowANodeWithTheNumbersInEveryRow) {
    const ScratchFolder folder;
    EXPECT_TRUE(qnl::exports::WriteCsvSurface(folder.File("x.csv"), SampleSurface(), SampleFrame()));
    EXPECT_EQ(folder.Read("x.csv"),
              "Node label,x [mm],y [mm],z [mm],Speed [cm per s],Status,\"Way, x [mm]\",\"Way, y "
              "[mm]\",\"Way, z [mm]\",TimeValue\n"
              "11,0,0,0,1.5,0,1,2,3,0.1\n"
              "12,1,0,0,0.1,0,4,5,6,0.1\n"
              "13,1,1,0,nan,1,7,8,9,0.1\n"
              "14,0,1,0,4,0,10,11,12,0.1\n"
              "15,2,0.5,0.1,5,0,13,14,15,0.1\n");
}

TEST(WriteCsvTimes, ARowAFile) {
    const ScratchFolder folder;
    EXPECT_TRUE(
        qnl::exports::WriteCsvTimes(folder.File("x.csv"), "Time [s]", {{0.25, "a,b.csv"}, {6.4, "c.csv"}}));
    EXPECT_EQ(folder.Read("x.csv"), "File,Time [s]\n\"a,b.csv\",0.25\nc.csv,6.4\n");
}

TEST(WriteCsvSurface, AFileThatCannotBeWrittenIsAFault) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    EXPECT_FALSE(qnl::exports::WriteCsvSurface(folder.File("none/x.csv"), SampleSurface(), SampleFrame()));
    EXPECT_FALSE(qnl::exports::WriteCsvTimes(folder.File("none/y.csv"), "Time [s]", {}));
    EXPECT_EQ(qnl::TakeFaults().size(), 2U);
}

}  // namespace
