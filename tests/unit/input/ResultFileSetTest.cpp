#include "input/ResultFileSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

const char* const kMissing = "QNLIntermediateOutputTime.log doesn't exist !\n";

class FileSetTest : public InputTest {
protected:
    FileSetTest() { job_.m_szLogFile.Set(Windows(PathTo("part1.lgz"))); }

    static std::string Windows(std::string path) {
        std::replace(path.begin(), path.end(), '/', '\\');
        return path;
    }
    void WriteLog(const std::string& content) {
        std::ofstream(PathTo("QNLIntermediateOutputTime.log"), std::ios::binary) << content;
    }
    void Select(const std::string& input) {
        input_ = input;
        job_.m_szInputResult = input_.c_str();
        EXPECT_EQ(SelectResultFiles(job_), 1);
    }
    std::string Flags() const {
        std::string flags;
        flags += job_.m_bHasFlow == 1 ? "flow " : "";
        flags += job_.m_bHasCool == 1 ? "cool " : "";
        flags += job_.m_bHasWarp == 1 ? "warp " : "";
        flags += job_.m_bHasIntermediateTimes == 1 ? "times " : "";
        flags += job_.m_bIsFlakeLightIntensity == 1 ? "flake " : "";
        return flags;
    }

private:
    std::string input_;
};

TEST_F(FileSetTest, FlowInput) {
    const CapturedOutput output;
    Select("C:\\p\\Analysis\\Run1\\part1.k4f");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "C:\\p\\Analysis\\Run1\\part1.fzr");
    EXPECT_EQ(Flags(), "flow ");
}

TEST_F(FileSetTest, PackInput) {
    const CapturedOutput output;
    Select("x.k4p");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "x.pzr");
    EXPECT_EQ(Flags(), "flow ");
}

TEST_F(FileSetTest, CoolInputLooksForNoLog) {
    const CapturedOutput output;
    Select("x.k4c");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "x.czr");
    EXPECT_EQ(Flags(), "cool ");
    EXPECT_EQ(output.Text(), "");
}

TEST_F(FileSetTest, CoolInputHasNoIntermediateTimesWhateverTheAnalysis) {
    WriteLog("[EOF]\n");
    job_.m_nAnalysisType = 4;
    Select("x.k4c");
    EXPECT_EQ(Flags(), "cool ");
}

TEST_F(FileSetTest, HeatingCoolingInputIsNoCoolInput) {
    Select("x.k4hc");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "x.hczr");
    EXPECT_EQ(Flags(), "cool ");
}

TEST_F(FileSetTest, WarpInput) {
    const CapturedOutput output;
    Select("x.k4w");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "x.wzr");
    EXPECT_EQ(Flags(), "warp ");
    EXPECT_EQ(output.Text(), kMissing);
}

TEST_F(FileSetTest, InputOfNoStageReplacesTheResultNameAllTheSame) {
    const CapturedOutput output;
    job_.m_szResultFile.Set("something.fzr");
    Select("run.dat");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "run");
    EXPECT_EQ(Flags(), "");
}

TEST_F(FileSetTest, PatternsInFolderNamesCountAndExtensionsAddUp) {
    Select("D:\\old.k4w\\part.k4c");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "D:\\old.k4w\\part.czr.wzr");
    EXPECT_EQ(Flags(), "cool warp ");
}

TEST_F(FileSetTest, TheStemEndsAtTheLastDot) {
    Select("D:\\a.k4c\\part");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "D:\\a.czr");
}

TEST_F(FileSetTest, FlowInputLooksForTheLogByAnalysisType) {
    WriteLog("[EOF]\n");
    for (int type = 0; type <= 10; ++type) {
        job_.m_nAnalysisType = type;
        job_.m_bHasIntermediateTimes = 0;
        Select("x.k4f");
        const bool expected = type == 1 || type == 4 || (type >= 6 && type <= 9);
        EXPECT_EQ(job_.m_bHasIntermediateTimes, expected ? 1 : 0) << type;
    }
}

TEST_F(FileSetTest, PackInputLooksForTheLogAtEveryAnalysisType) {
    WriteLog("[EOF]\n");
    job_.m_nAnalysisType = 2;
    Select("x.k4p");
    EXPECT_EQ(Flags(), "flow times ");
}

TEST_F(FileSetTest, FlowInputOfTypeTwoLooksForTheLogInTheFibreTestOnly) {
    job_.m_nAnalysisType = 2;
    const CapturedOutput output;
    Select("x.k4f");
    EXPECT_EQ(output.Text(), kMissing);
}

TEST_F(FileSetTest, TheMissingLogIsPrintedOncePerLook) {
    job_.m_nAnalysisType = 4;
    const CapturedOutput output;
    Select("D:\\x.k4p\\part.k4f");
    EXPECT_EQ(output.Text(), std::string(kMissing) + kMissing + kMissing);
}

TEST_F(FileSetTest, FibreResultBesideFlowInputIsTakenUp) {
    WriteLog("[EOF]\n");
    job_.m_nLogLevel = 1;
    const std::string fibre = TextFile("part1.k4o", "");
    const CapturedOutput output;
    Select(Windows(PathTo("part1.k4f")));
    EXPECT_EQ(Flags(), "flow flake ");
    EXPECT_EQ(output.Text(), Windows(PathTo("QNLIntermediateOutputTime.log")) + "\nisFlakeLightIntensity\n");
}

TEST_F(FileSetTest, TheFibreResultIsNamedAfterTheInputNotAfterTheResult) {
    WriteLog("[EOF]\n");
    TextFile("old.k4w_part1.k4o", "");
    const CapturedOutput output;
    Select(Windows(PathTo("old.k4w_part1.k4f")));
    EXPECT_EQ(job_.m_szResultFile.View(), Windows(PathTo("old.k4w_part1.fzr.wzr")));
    EXPECT_EQ(Flags(), "flow warp flake ");
}

TEST_F(FileSetTest, FibreResultBesidePackInputIsNotTakenUp) {
    WriteLog("[EOF]\n");
    TextFile("part1.k4o", "");
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    Select(Windows(PathTo("part1.k4p")));
    EXPECT_EQ(Flags(), "flow times ");
    EXPECT_EQ(output.Text().find("LightIntensity"), std::string::npos);
}

TEST_F(FileSetTest, WithoutFibreResultTheFlagIsCleared) {
    WriteLog("[EOF]\n");
    job_.m_nLogLevel = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    const CapturedOutput output;
    Select(Windows(PathTo("part1.k4f")));
    EXPECT_EQ(Flags(), "flow ");
    EXPECT_EQ(output.Text(), Windows(PathTo("QNLIntermediateOutputTime.log")) + "\nno EOF K4O\n");
}

TEST_F(FileSetTest, WithoutCompleteLogFibreResultsAreNotLookedAt) {
    WriteLog("unfinished\n");
    TextFile("part1.k4o", "");
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    Select(Windows(PathTo("part1.k4f")));
    EXPECT_EQ(Flags(), "flow ");
    EXPECT_EQ(output.Text(), Windows(PathTo("QNLIntermediateOutputTime.log")) + "\n");
}

TEST_F(FileSetTest, InputWithoutDotRaises) {
    EXPECT_THROW(Select("part"), std::out_of_range);
    EXPECT_THROW(Select(""), std::out_of_range);
    job_.m_szInputResult = nullptr;
    EXPECT_THROW(SelectResultFiles(job_), std::out_of_range);
}

TEST_F(FileSetTest, LogPathWithoutFolderRaises) {
    job_.m_szLogFile.Set("part1.lgz");
    EXPECT_THROW(Select("x.k4f"), std::out_of_range);
    EXPECT_NO_THROW(Select("x.k4c"));
}

TEST_F(FileSetTest, ResultNameThatDoesNotFitRaises) {
    job_.m_szResultFile.Set("before");
    EXPECT_THROW(Select(std::string(600, 'x') + ".k4c"), std::length_error);
    EXPECT_STREQ(job_.m_szResultFile.Text(), "before");
}

TEST_F(FileSetTest, LogPathOfMoreThan254BytesRaises) {
    const std::string name = "\\QNLIntermediateOutputTime.log";
    const std::string folder = "D:\\" + std::string(254 - 3 - name.size(), 'f');
    job_.m_szLogFile.Set(folder + "\\a.lgz");
    const CapturedOutput output;
    EXPECT_EQ(CheckIntermediateOutputLog(job_), 3302);
    job_.m_szLogFile.Set(folder + "f\\a.lgz");
    EXPECT_THROW(CheckIntermediateOutputLog(job_), std::length_error);
}

struct LogCase {
    const char* name;
    std::string content;
    int result;
};

TEST_F(FileSetTest, TheLogIsCompleteWithItsMark) {
    const LogCase cases[] = {
        {"alone, without line end", "[EOF]", 1},
        {"with text around it", "0.5\nthe [EOF] mark\n", 1},
        {"followed by other lines", "[EOF]\n1.5\n", 1},
        {"shorter lines", "[EO\nF]\nEOF\n", 0},
        {"empty", "", 0},
        {"other case", "[eof]\n", 0},
        {"cut by the line buffer", std::string(252, 'x') + "[EOF]\n", 0},
        {"right behind a full buffer", std::string(254, 'x') + "[EOF]\n", 1},
        {"last in a full buffer", std::string(249, 'x') + "[EOF]\n", 1},
        {"behind a NUL in its line", std::string("abc\0[EOF]\n", 10), 0},
    };
    for (const LogCase& c : cases) {
        WriteLog(c.content);
        EXPECT_EQ(CheckIntermediateOutputLog(job_), c.result) << c.name;
    }
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

}  // namespace
