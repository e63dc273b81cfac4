#include "profile/search/PassElementSearch.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <limits>
#include <set>

#include "support/SetClock.h"
#include "support/StackJob.h"

namespace {

const int* Find(FrozenLayerJob& job, int i, int& count, int thread = 0) {
    return FindNodePassElems(job, i, count, i, 0.0, 0.0, 0.0, 0.0, 1.0, thread);
}

}  // namespace

TEST(PassElementSearch, StoresAnExactCopyAndGivesTheKernelsArray) {
    StackJob stack(2, {0.0}, {1.0, 2.0}, 2.0);
    Script(stack.job).rays[2] = {3, 1, 2};
    int count = 0;
    const int* ids = Find(stack.job, 2, count);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(ids, Script(stack.job).slots[0].data());
    const CSurfNodeSearch& record = stack.job.m_pNodeSearchResults[2];
    ASSERT_EQ(record.m_nPassElems, 3);
    EXPECT_NE(record.m_pPassElems.get(), ids);
    EXPECT_EQ(std::vector<int>(record.m_pPassElems.get(), record.m_pPassElems.get() + 3),
              (std::vector<int>{3, 1, 2}));
}

TEST(PassElementSearch, WithTheSearchDoneTheKernelIsNotAsked) {
    StackJob stack(2, {0.0}, {1.0, 2.0}, 2.0);
    Script(stack.job).rays[1] = {1, 2};
    int count = 0;
    Find(stack.job, 1, count);
    stack.job.m_bSearchDone = 1;
    Script(stack.job).rays.clear();
    const int* ids = Find(stack.job, 1, count);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(ids, stack.job.m_pNodeSearchResults[1].m_pPassElems.get());
    EXPECT_EQ(Script(stack.job).rayCalls, 1);
    Find(stack.job, 2, count);
    EXPECT_EQ(count, 0) << "an empty record stays empty";
    EXPECT_EQ(Script(stack.job).rayCalls, 1);
}

TEST(PassElementSearch, ARayThroughNothingStoresNoArray) {
    StackJob stack(1, {0.0}, {1.0}, 2.0);
    int count = 7;
    Find(stack.job, 1, count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(stack.job.m_pNodeSearchResults[1].m_nPassElems, 0);
    EXPECT_EQ(stack.job.m_pNodeSearchResults[1].m_pPassElems, nullptr);
}

TEST(PassElementSearch, CountsPerThread) {
    StackJob stack(2, {0.0}, {1.0, 2.0}, 2.0);
    stack.SetThreads(2);
    Script(stack.job).rays[1] = {1, 2};
    Script(stack.job).rays[2] = {1, 2, 3};
    int count = 0;
    Find(stack.job, 1, count, 1);
    Find(stack.job, 2, count, 1);
    stack.job.m_bSearchDone = 1;
    Find(stack.job, 2, count, 0);
    EXPECT_EQ(stack.job.m_pThreadFindCount[0], 1);
    EXPECT_EQ(stack.job.m_pThreadFindCount[1], 2);
    EXPECT_EQ(stack.job.m_pThreadRecordCount[0], 3);
    EXPECT_EQ(stack.job.m_pThreadRecordCount[1], 5);
}

TEST(PassElementSearch, AddsUpTheTimeOfTheThread) {
    StackJob stack(1, {0.0}, {1.0, 2.0}, 2.0);
    stack.SetThreads(2);
    fake::TheClock() = {100.0, 0.25};
    int count = 0;
    Find(stack.job, 1, count, 1);
    Find(stack.job, 1, count, 1);
    fake::TheClock() = {};
    EXPECT_EQ(stack.job.m_pThreadFindTime[0], 0.0);
    EXPECT_EQ(stack.job.m_pThreadFindTime[1], 0.5);
}

TEST(PassElementSearch, TheTotalStaysAtTheLargestNumber) {
    StackJob stack(1, {0.0}, {1.0, 2.0}, 2.0);
    Script(stack.job).rays[1] = {1, 2};
    stack.job.m_pThreadRecordCount[0] = std::numeric_limits<int>::max() - 1;
    int count = 0;
    Find(stack.job, 1, count);
    EXPECT_EQ(stack.job.m_pThreadRecordCount[0], std::numeric_limits<int>::max());
}

TEST(PassElementSearch, WithoutRecordsNothingIsStored) {
    StackJob stack(1, {0.0}, {1.0, 2.0}, 2.0);
    Script(stack.job).rays[1] = {1, 2};
    stack.job.m_pNodeSearchResults.reset();
    stack.job.m_bSearchDone = -1;
    int count = 0;
    Find(stack.job, 1, count);
    EXPECT_EQ(count, 2);
}

TEST(PassElementSearch, TheSlotIsZeroOnOneThread) {
    StackJob stack(1, {0.0}, {1.0}, 2.0);
    EXPECT_EQ(qnl::profile::SearchSlot(stack.job), 0);
    stack.job.m_nThreads = 4;
    EXPECT_EQ(qnl::profile::SearchSlot(stack.job), 0) << "outside a parallel region";
}

TEST(PassElementSearch, TheSlotIsTheThreadsWhereTheJobHasSeveral) {
    StackJob stack(1, {0.0}, {1.0}, 2.0);
    const auto slots = [&stack](int threads) {
        stack.job.m_nThreads = threads;
        std::set<int> used;
#pragma omp parallel num_threads(2)
#pragma omp critical
        used.insert(qnl::profile::SearchSlot(stack.job));
        return used;
    };
    EXPECT_EQ(slots(2), (std::set<int>{0, 1}));
    EXPECT_EQ(slots(1), std::set<int>{0});
    EXPECT_EQ(slots(0), std::set<int>{0});
}
