#include "job/OutputTimes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "job/CarriedState.h"
#include "platform/CQNLOptKer.h"
#include "platform/Faults.h"
#include "support/CapturedOutput.h"

namespace {

using Names = std::vector<std::string>;

/// Notes the stage file and the result file of every output time.
class Witness : public qnl::RunObserver {
public:
    void TimeBegins(int /*index*/, int /*intermediateTimes*/, const char* stageFile) override {
        stageFiles.emplace_back(stageFile);
    }
    void TimeEnds(int /*index*/, bool evaluated, const FrozenLayerJob& job) override {
        EXPECT_FALSE(evaluated);
        resultFiles.emplace_back(job.m_szResultFile.View());
    }

    Names stageFiles;
    Names resultFiles;
};

/// A flow run none of whose stage files exists.
class OutputTimes : public ::testing::Test {
protected:
    OutputTimes() {
        job_.m_options.observer = &witness_;
        job_.m_szResultFile.Set("no such folder\\part1.fzr");
    }
    ~OutputTimes() override { qnl::TakeFaults(); }

    static constexpr const char* kStageFile = "no such folder\\part1.k4f";
    Witness witness_;
    FrozenLayerJob job_;
};

}  // namespace

TEST_F(OutputTimes, ACountOfZeroOrLessIsTheBaseTimeAlone) {
    for (const int count : {0, -1}) {
        witness_.stageFiles.clear();
        job_.m_nIntermediateTimes = count;
        EXPECT_EQ(qnl::job::EvaluateOutputTimes(job_, kStageFile), 1);
        EXPECT_EQ(witness_.stageFiles, Names{kStageFile}) << count;
    }
}

TEST_F(OutputTimes, KeptTimesArePassedOver) {
    job_.m_nIntermediateTimes = 3;
    job_.m_options.keptTimes = {0, 2};
    EXPECT_EQ(qnl::job::EvaluateOutputTimes(job_, kStageFile), 1);
    EXPECT_EQ(witness_.stageFiles, (Names{"no such folder\\part1_001.k4f", "no such folder\\part1_003.k4f"}));
    EXPECT_EQ(witness_.resultFiles,
              (Names{"no such folder\\part1_001.fzr", "no such folder\\part1_003.fzr"}));
    EXPECT_EQ(job_.m_szResultFile.View(), "no such folder\\part1.fzr");
}

TEST_F(OutputTimes, AFailedBaseTimeDoesNotStopTheOthers) {
    EXPECT_EQ(qnl::job::EvaluateBaseTime(job_, kStageFile), -3000);
    witness_.stageFiles.clear();
    job_.m_nIntermediateTimes = 2;
    EXPECT_EQ(qnl::job::EvaluateOutputTimes(job_, kStageFile), 1);
    EXPECT_EQ(witness_.stageFiles,
              (Names{kStageFile, "no such folder\\part1_001.k4f", "no such folder\\part1_002.k4f"}));
}

TEST_F(OutputTimes, TheBaseResultPathComesBack) {
    job_.m_nIntermediateTimes = 2;
    qnl::job::EvaluateOutputTimes(job_, kStageFile);
    EXPECT_EQ(witness_.resultFiles, (Names{"no such folder\\part1.fzr", "no such folder\\part1_001.fzr",
                                           "no such folder\\part1_002.fzr"}));
    EXPECT_EQ(job_.m_szResultFile.View(), "no such folder\\part1.fzr");
}

TEST(CarriedState, TextOfTimeStepsIsForgottenWithoutALogLine) {
    FrozenLayerJob job;
    job.m_nLogLevel = 1;
    job.m_nAsciiItemCount = 7;
    std::strcpy(job.m_szTimeSteps, "0.5\n");
    CapturedOutput output;
    qnl::job::DropCarriedState(job);
    EXPECT_EQ(output.Text(), "");
    EXPECT_EQ(job.m_nAsciiItemCount, 1);
    EXPECT_STREQ(job.m_szTimeSteps, "");
}
