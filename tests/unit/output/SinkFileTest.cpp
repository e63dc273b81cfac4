#include "output/SinkFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <sstream>
#include <vector>

#include "input/WarpResults.h"
#include "platform/Faults.h"
#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"

namespace {

/// Three nodes with labels 1, 2 and 5; node 2 lies on the runner.
class SinkFile : public ::testing::Test {
protected:
    SinkFile() {
        job_.m_nNodes = 3;
        job_.m_nCells = 2;
        job_.m_nMaxLabel = 5;
        job_.m_bUseNodeLabel = 1;
        job_.m_pIsPartNodeTemp = partNodes_.data();
        job_.m_pNodeGlobalIdToLocal = toLocal_.data();
        job_.m_szLogFile.Set(folder_.Path() + "\\run.v2.lgz");
        job_.m_szMeshFile.Set("D:\\P\\Mesh\\a.hdf");
        job_.m_szMaterialFile.Set("D:\\P\\Material\\b.toml");
    }

    std::vector<std::string> WrittenLines() {
        EXPECT_EQ(qnl::output::WriteSinkFile(job_, u_.data(), v_.data(), w_.data()), 1);
        std::istringstream text(folder_.Read("run.v2_Sink.k4w"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    std::array<int, 6> partNodes_{0, 1, 0, 0, 0, 1};
    std::array<int, 6> toLocal_{0, 1, 2, 0, 0, 3};
    std::array<double, 4> u_{9, 0.5, 7, 1e-7};
    std::array<double, 4> v_{9, -0.25, 7, -0.0};
    std::array<double, 4> w_{9, 1.0 / 3.0, 7, 123456789.0};
    ScratchFolder folder_;
    FrozenLayerJob job_;
};

}  // namespace

TEST_F(SinkFile, HeadIsWrittenLineByLine) {
    const std::vector<std::string> lines = WrittenLines();
    const std::vector<std::string> head{
        "1", "[HEADER]", "1007  9104",    "D:\\P\\Mesh\\a.hdf", "D:\\P\\Material\\b.toml", ".pro",
        "0", "5 2 0",    "17 7",          "0 0 0 0 1 1 1",      "04/02/10  17:41:28 ",     "[FIX NODE]",
        "0", "-1",       "[VARBLE INFO]", "XDisplacement    mm"};
    ASSERT_GT(lines.size(), head.size());
    for (std::size_t i = 0; i < head.size(); ++i) {
        EXPECT_EQ(lines[i], head[i]) << "line " << i + 1;
    }
    EXPECT_EQ(lines[21], "VolmShrinkage   '%'");
    EXPECT_EQ(lines[31], "ZFRSDisplacement  mm");
    EXPECT_EQ(lines[32], "");
    EXPECT_EQ(lines[33], "[RESULTS EOW]");
}

TEST_F(SinkFile, RowsAreAddressedByLabelAndOthersThanPartNodesAreZero) {
    const std::vector<std::string> lines = WrittenLines();
    const std::string zeros = " 0 0 0 0 0 0 0 0 0 0 0 0 0 0";
    EXPECT_EQ(lines[34], "1 0.5 -0.25 0.333333" + zeros);
    EXPECT_EQ(lines[35], "2 0 0 0" + zeros) << "the runner node has a vector, but must not show it";
    EXPECT_EQ(lines[36], "3 0 0 0" + zeros);
    EXPECT_EQ(lines[38], "5 1e-07 0 1.23457e+08" + zeros) << "a negative zero is written as 0";
    EXPECT_EQ(lines[39], "[ELEM VARBLE INFO]");
    EXPECT_EQ(lines[46], "VonMisesThermlStress  MPa");
    EXPECT_EQ(lines[47], "[PART ELEM RESULTS]");
    EXPECT_EQ(lines[48], "1 0 0 0 0 0 0 0");
    EXPECT_EQ(lines[49], "2 0 0 0 0 0 0 0");
    EXPECT_EQ(lines[50], "[PART INSERT ELEM RESULTS]");
    EXPECT_EQ(lines[51], "[EOF]");
    EXPECT_EQ(lines.size(), 52U);
}

TEST_F(SinkFile, WithoutLabelsThereAreAsManyRowsAsNodes) {
    job_.m_bUseNodeLabel = 0;
    EXPECT_EQ(WrittenLines()[7], "3 2 0");
}

TEST_F(SinkFile, RowsBeyondTheLabelsAreZero) {
    job_.m_bUseNodeLabel = 0;
    job_.m_nMaxLabel = 2;
    partNodes_[3] = 1;  // behind the last label
    EXPECT_EQ(WrittenLines()[36].substr(0, 8), "3 0 0 0 ");
}

TEST_F(SinkFile, ALogPathWithoutDotIsKeptWhole) {
    const ScratchFolder folder;
    if (folder.Path().find('.') != std::string::npos) {
        GTEST_SKIP() << "the temporary folder's own name holds a dot";
    }
    job_.m_szLogFile.Set(folder.Path() + "\\run");
    EXPECT_EQ(qnl::output::WriteSinkFile(job_, u_.data(), v_.data(), w_.data()), 1);
    EXPECT_FALSE(folder.Read("run_Sink.k4w").empty());
}

TEST_F(SinkFile, ADotInAFolderNameIsCutWhenTheFilePartHasNone) {
    job_.m_szLogFile.Set(folder_.Path() + "\\a.b\\run");
    EXPECT_EQ(qnl::output::WriteSinkFile(job_, u_.data(), v_.data(), w_.data()), 1);
    EXPECT_FALSE(folder_.Read("a_Sink.k4w").empty());
}

TEST_F(SinkFile, IsReadBackAsAWarpResult) {
    job_.m_bUseNodeLabel = 0;
    ASSERT_EQ(qnl::output::WriteSinkFile(job_, u_.data(), v_.data(), w_.data()), 1);
    job_.m_pNodeData[1] = std::make_unique<double[]>(4);
    std::fill_n(job_.m_pNodeData[1].get(), 4, 9.0);
    qnl::TakeFaults();
    EXPECT_EQ(ReadWarpResultsAscii(job_, (folder_.Path() + "\\run.v2_Sink.k4w").c_str()), 1);
    EXPECT_TRUE(qnl::TakeFaults().empty());
    for (std::size_t node = 1; node <= 3; ++node) {
        EXPECT_EQ(job_.m_pNodeData[1][node], 0.0) << node;
    }
    EXPECT_EQ(job_.m_dMaxValue, 0.0);
}

TEST_F(SinkFile, AFileThatCannotBeOpenedIsReportedAtAnyLogLevel) {
    job_.m_szLogFile.Set(folder_.Path() + "\\missing\\run.lgz");
    const CapturedOutput output;
    EXPECT_EQ(qnl::output::WriteSinkFile(job_, u_.data(), v_.data(), w_.data()), -1);
    EXPECT_EQ(output.Text(), "Can not open k4w file!\n");
}
