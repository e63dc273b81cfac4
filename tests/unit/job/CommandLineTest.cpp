#include "job/CommandLine.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"

namespace {

class CommandLine : public ::testing::Test {
protected:
    /// Puts a run file where project "part", run 2 expects it.
    void WriteRunFile(const std::string& text) { folder_.Write("Analysis/Run2/part2.run", text); }

    int Handle(std::vector<std::string> words) {
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        return qnl::job::HandleCommandLine(job_, static_cast<int>(words.size()), argv.data());
    }

    int HandleProject() { return Handle({"part2.k4f", folder_.Path(), "part", "4", "2", "x"}); }

    std::string Dir() const { return folder_.Path(); }

    ScratchFolder folder_;
    FrozenLayerJob job_;
    CapturedOutput output_;
};

constexpr const char* kRunFile =
    "[MESH]\nMeshCount = 1\nMesh1 = part.hdf\n[MATERIAL]\nMaterialCount = 1\nMaterial1 = abs.toml\n";

}  // namespace

TEST_F(CommandLine, BuildsThePathsOfTheProject) {
    WriteRunFile(kRunFile);
    ASSERT_EQ(HandleProject(), 1);
    const std::string stem = Dir() + "\\Analysis\\Run2\\part2";
    EXPECT_EQ(job_.m_szResultFile.View(), stem + ".fzr");
    EXPECT_EQ(job_.m_szLogFile.View(), stem + ".lgz");
    EXPECT_EQ(job_.m_szCmxFile.View(), stem + ".cmx");
    EXPECT_EQ(job_.m_szRunFile.View(), stem + ".run");
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\part.hdf");
    EXPECT_EQ(job_.m_szMeshBase.View(), Dir() + "\\Mesh\\part");
    EXPECT_EQ(job_.m_szSurFile.View(), Dir() + "\\Mesh\\part.sur");
    EXPECT_EQ(job_.m_szMaterialFile.View(), Dir() + "\\Material\\abs.toml");
    EXPECT_EQ(job_.m_szProjectName.View(), "part");
    EXPECT_EQ(job_.m_nAnalysisType, 4);
    EXPECT_NE(job_.m_pLogTool, nullptr);
    EXPECT_NE(job_.m_pCom, nullptr);
}

TEST_F(CommandLine, OnlyFiveWordsSetTheIntermediateTimes) {
    WriteRunFile(kRunFile);
    Handle({"part2.k4f", Dir(), "part", "4"});
    EXPECT_EQ(job_.m_nIntermediateTimes, 0);
    HandleProject();
    EXPECT_EQ(job_.m_nIntermediateTimes, 0);
    Handle({"part2.k4f", Dir(), "part", "4", "2"});
    EXPECT_EQ(job_.m_nIntermediateTimes, 2);
}

TEST_F(CommandLine, ExplicitIntermediateTimesWinOverTheFiveWords) {
    WriteRunFile(kRunFile);
    job_.m_options.intermediateTimes = 7;
    Handle({"part2.k4f", Dir(), "part", "4", "2"});
    EXPECT_EQ(job_.m_nIntermediateTimes, 7);
}

TEST_F(CommandLine, AWordThatIsNoNumberLeavesTheCountAtZero) {
    WriteRunFile(kRunFile);
    Handle({"part2.k4f", Dir(), "part", "x", "99999999999"});
    EXPECT_EQ(job_.m_nIntermediateTimes, 0);
    EXPECT_EQ(job_.m_nAnalysisType, 0);
}

TEST_F(CommandLine, MissingRunFileGives3302AndNoTimer) {
    EXPECT_EQ(HandleProject(), 3302);
    EXPECT_NE(output_.Text().find("*.run doesn't exist !\n"), std::string::npos);
    EXPECT_EQ(job_.m_pCom, nullptr);
    EXPECT_EQ(job_.m_szMeshFile.View(), "");
}

TEST_F(CommandLine, SecondOfTwoMeshLinesIsSkipped) {
    WriteRunFile(
        "[MESH]\nMeshCount = 2\nMesh1 = one.hdf\nMesh2 = "
        "two.hdf\n[MATERIAL]\nMaterialCount=2\nA=a.t\nB=b.t\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
    EXPECT_EQ(job_.m_szMaterialFile.View(), Dir() + "\\Material\\a.t");
}

TEST_F(CommandLine, CountOfZeroOrNonsenseStillTakesOneLine) {
    WriteRunFile("[MESH]\nMeshCount = none\nMesh1 = one.hdf\n[MATERIAL]\nMaterialCount = 0\nM = a.toml\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
    EXPECT_EQ(job_.m_szMaterialFile.View(), Dir() + "\\Material\\a.toml");
}

TEST_F(CommandLine, LineAfterAHeaderWithoutItsCountIsExaminedLikeAnyOther) {
    WriteRunFile("[MESH]\n[MATERIAL]\nMaterialCount=1\nM=a.toml\n[MESH]\nMeshCount=1\nM=one.hdf\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
    EXPECT_EQ(job_.m_szMaterialFile.View(), Dir() + "\\Material\\a.toml");
}

TEST_F(CommandLine, HeadersAndKeysAreFoundAnywhereInTheLine) {
    WriteRunFile("  x [MESH] y\n  the MeshCount is = 1\nMesh1 = one.hdf\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
    EXPECT_EQ(job_.m_szMaterialFile.View(), "");
}

TEST_F(CommandLine, CarriageReturnsBelongToTheLineEnd) {
    WriteRunFile(
        "[MESH]\r\nMeshCount = 1\r\nMesh1 = one.hdf\r\n[MATERIAL]\r\nMaterialCount = 1\r\nM = a.toml\r\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
    EXPECT_EQ(job_.m_szMaterialFile.View(), Dir() + "\\Material\\a.toml");
}

TEST_F(CommandLine, HugeCountEndsAtTheEndOfTheFile) {
    WriteRunFile("[MESH]\nMeshCount = 2147483647\nMesh1 = one.hdf\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
}

TEST_F(CommandLine, MeshNameWithoutExtensionIsOutOfRange) {
    WriteRunFile("[MESH]\nMeshCount = 1\nMesh1 = mesh\n");
    EXPECT_THROW(HandleProject(), std::out_of_range);
}

TEST_F(CommandLine, OfTwoMeshSectionsTheSecondCountsWhateverTheFirstNames) {
    WriteRunFile("[MESH]\nMeshCount = 1\nMesh1 = mesh\n[MESH]\nMeshCount = 1\nMesh1 = one.hdf\n");
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\one.hdf");
    EXPECT_EQ(job_.m_szMeshBase.View(), Dir() + "\\Mesh\\one");
}

TEST_F(CommandLine, MeshNameWithoutExtensionIsReadAndItsMaterialToo) {
    WriteRunFile("[MESH]\nMeshCount = 1\nMesh1 = mesh\n[MATERIAL]\nMaterialCount = 1\nM = a.toml\n");
    EXPECT_THROW(HandleProject(), std::out_of_range);
    EXPECT_EQ(job_.m_szMeshFile.View(), Dir() + "\\Mesh\\mesh");
    EXPECT_EQ(job_.m_szMeshBase.View(), Dir() + "\\Mesh\\mesh");
    EXPECT_EQ(job_.m_szMaterialFile.View(), Dir() + "\\Material\\a.toml");
}

TEST_F(CommandLine, TheKernelGetsTheLogLevelAndTheLogTool) {
    WriteRunFile(kRunFile);
    job_.m_nLogLevel = 3;
    ASSERT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_pOptKer->m_nLogLevel, 3);
}

TEST_F(CommandLine, TextsThatDoNotFitTheirBuffersAreRefused) {
    EXPECT_THROW(Handle({"part2.k4f", std::string(255, 'd'), "part", "4", "2", "x"}), std::length_error);
    WriteRunFile("[MESH]\nMeshCount = 1\nM=" + std::string(200, 'm') + ".hdf\n");
    EXPECT_EQ(HandleProject(), 1);
    EXPECT_EQ(job_.m_szMeshFile.View().size(), Dir().size() + 6 + 204);
}

TEST_F(CommandLine, TwoWordsAtLevelTwoNameTheInputFile) {
    WriteRunFile(kRunFile);
    job_.m_nLogLevel = 2;
    ASSERT_EQ(Handle({"part2.k4f", Dir() + "/Analysis/Run2/part2.k4f"}), 1);
    EXPECT_EQ(job_.m_nLogLevel, 0);
    EXPECT_EQ(job_.m_szProjectName.View(), "part");
    EXPECT_NE(output_.Text().find("InputFileName =" + Dir() + "/Analysis/Run2/part2.k4f\n"),
              std::string::npos);
    EXPECT_EQ(output_.Text().find("argv_1 ="), std::string::npos);
}

TEST_F(CommandLine, SingleWordAtLevelTwoIsRefused) {
    job_.m_nLogLevel = 2;
    EXPECT_THROW(Handle({"part2.k4f"}), std::invalid_argument);
}
