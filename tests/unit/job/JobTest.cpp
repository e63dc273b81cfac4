#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

#include "context/FrozenLayerJob.h"
#include "job/RunSummary.h"
#include "support/CapturedOutput.h"

TEST(Job, StartsWithItsDefaults) {
    const FrozenLayerJob job;
    EXPECT_EQ(job.m_bSearchDone, 1);
    EXPECT_EQ(job.m_nThreads, 1);
    EXPECT_EQ(job.m_nAsciiItemCount, 1);
    EXPECT_EQ(job.m_nIntermediateTimes, 0);
    EXPECT_EQ(job.m_nLogLevel, 0);
    EXPECT_EQ(job.m_dMaxValue, -1e8);
    EXPECT_EQ(job.m_dSurAvgMeshSize, 0.001);
    EXPECT_EQ(job.m_dKernelScratch, 0.0);
    EXPECT_NE(job.m_pOptKer, nullptr);
    EXPECT_EQ(job.m_pLogTool, nullptr);
    EXPECT_EQ(job.m_pCom, nullptr);
    EXPECT_STREQ(job.m_szResultFile.Text(), "");
}

TEST(Job, ConstructionSetsTheFirstCallFlagAgain) {
    g_bDriverFirstCall = false;
    const FrozenLayerJob job;
    EXPECT_TRUE(g_bDriverFirstCall);
}

TEST(FixedText, HoldsOneByteLessThanItsSize) {
    qnl::PathText path;
    path.Set(std::string(511, 'a'));
    EXPECT_EQ(path.View().size(), 511U);
    EXPECT_THROW(path.Set(std::string(512, 'b')), std::length_error);
    EXPECT_EQ(path.View(), std::string(511, 'a')) << "a refused text must leave the content alone";
}

TEST(RunSummary, OneThreadPrintsOneBlock) {
    FrozenLayerJob job;
    job.m_pCom = std::make_unique<CQNLCom>();
    job.m_dStartTime = job.m_pCom->Time();
    job.m_pThreadFindCount = std::make_unique<int[]>(1);
    job.m_pThreadRecordCount = std::make_unique<int[]>(1);
    job.m_pThreadFindTime = std::make_unique<double[]>(1);
    job.m_pThreadFindCount[0] = 12;
    job.m_pThreadRecordCount[0] = 345;
    job.m_pThreadFindTime[0] = 0.25;
    const CapturedOutput output;
    EXPECT_EQ(qnl::job::MakeRunSummary(job), 1);
    EXPECT_EQ(output.Text().find("CPUID: 0    -   \n"
                                 "Record PassElems: 345    -   \n"
                                 "Find PassElem Count: 12    -   \n"
                                 "Find PassElem  Time: 0.25 seconds\n"
                                 "Total Analysis Time: "),
              0U);
    EXPECT_EQ(job.m_dTotalTime, job.m_dEndTime - job.m_dStartTime);
}

TEST(RunSummary, TellsEveryThreadsOwnFiguresAndTheTotalInSeconds) {
    FrozenLayerJob job;
    job.m_nThreads = 2;
    job.m_pCom = std::make_unique<CQNLCom>();
    job.m_dStartTime = job.m_pCom->Time() - 1000.0;
    job.m_pThreadFindCount = std::make_unique<int[]>(2);
    job.m_pThreadRecordCount = std::make_unique<int[]>(2);
    job.m_pThreadFindTime = std::make_unique<double[]>(2);
    for (int t = 0; t < 2; ++t) {
        job.m_pThreadFindCount[t] = 12 + t;
        job.m_pThreadRecordCount[t] = 345 + t;
        job.m_pThreadFindTime[t] = 0.25 + t;
    }
    const CapturedOutput output;
    qnl::job::MakeRunSummary(job);
    EXPECT_GE(job.m_dTotalTime, 1000.0);
    EXPECT_LT(job.m_dTotalTime, 1010.0);
    std::ostringstream total;
    total << job.m_dTotalTime;
    EXPECT_EQ(output.Text(),
              "CPUID: 0    -   \n"
              "Record PassElems: 345    -   \n"
              "Find PassElem Count: 12    -   \n"
              "Find PassElem  Time: 0.25 seconds\n"
              "CPUID: 1    -   \n"
              "Record PassElems: 346    -   \n"
              "Find PassElem Count: 13    -   \n"
              "Find PassElem  Time: 1.25 seconds\n"
              "Total Analysis Time: " +
                  total.str() + " seconds\n");
}
