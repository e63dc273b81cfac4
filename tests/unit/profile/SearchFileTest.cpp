#include "profile/search/SearchFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "AllocationCount.h"
#include "platform/Faults.h"
#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"
#include "support/SetClock.h"
#include "support/StackJob.h"

namespace {

std::string Bytes(const std::vector<std::int64_t>& values) {
    std::string bytes;
    for (const std::int64_t value : values) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>((value >> shift) & 0xFF);
        }
    }
    return bytes;
}

/// A job of three nodes, two faces and three cells, with the file "mesh.sur" of its own folder.
class SearchFile : public testing::Test {
protected:
    SearchFile() : stack(3, {0.0, 3.0}, {0.5, 1.5, 2.5}, 3.0) {
        job.m_szSurFile.Set(folder.Path() + "\\mesh.sur");
        job.m_nLogLevel = 1;
        job.m_bSearchDone = 1;
        qnl::TakeFaults();
    }

    int ReadFrom(const std::string& bytes) {
        folder.Write("mesh.sur", bytes);
        return Read();
    }
    int Read() {
        const CapturedOutput output;
        const int status = ReadSearchResult(job);
        said = output.Text();
        return status;
    }
    int Write() {
        const CapturedOutput output;
        const int status = WriteSearchResult(job);
        said = output.Text();
        return status;
    }

    std::vector<int> Ids(int i) const {
        const CSurfNodeSearch& record = job.m_pNodeSearchResults.get()[i];
        return {record.m_pPassElems.get(), record.m_pPassElems.get() + record.m_nPassElems};
    }
    void SetIds(int i, const std::vector<int>& ids) {
        CSurfNodeSearch& record = job.m_pNodeSearchResults.get()[i];
        record.m_nPassElems = static_cast<int>(ids.size());
        record.m_pPassElems = std::make_unique<int[]>(ids.size());
        std::copy(ids.begin(), ids.end(), record.m_pPassElems.get());
    }

    /// A read that must fail as damaged, telling `found` about `object`.
    void ExpectDamage(const std::string& bytes, const std::string& object, const std::string& found) {
        job.m_bSearchDone = 1;
        EXPECT_EQ(ReadFrom(bytes), -1);
        EXPECT_EQ(job.m_bSearchDone, 0);
        for (int i = 0; i <= 3; ++i) {
            EXPECT_EQ(job.m_pNodeSearchResults.get()[i].m_nPassElems, 0) << "record " << i;
            EXPECT_EQ(job.m_pNodeSearchResults.get()[i].m_pPassElems, nullptr) << "record " << i;
        }
        EXPECT_EQ(said, "");
        const auto faults = qnl::TakeFaults();
        ASSERT_EQ(faults.size(), 1U);
        EXPECT_EQ(faults[0].object, object);
        EXPECT_EQ(faults[0].found, found);
        EXPECT_EQ(faults[0].file, job.m_szSurFile.Text());
    }

    void ExpectRefusal(const std::string& bytes, const std::string& message) {
        job.m_bSearchDone = 1;
        job.m_nLogLevel = 1;
        EXPECT_EQ(ReadFrom(bytes), -1);
        EXPECT_EQ(job.m_bSearchDone, 0);
        EXPECT_EQ(said, message);
        job.m_nLogLevel = 0;
        EXPECT_EQ(Read(), -1);
        EXPECT_EQ(said, "");
        EXPECT_TRUE(qnl::TakeFaults().empty());
    }

    ScratchFolder folder;
    StackJob stack;
    FrozenLayerJob& job = stack.job;
    std::string said;
};

const std::vector<std::int64_t> kGood = {1001, 3, 2, 5, 1, 0, 3, 3, 1, 2};

}  // namespace

TEST_F(SearchFile, IsWrittenToTheByte) {
    SetIds(1, {5, 1});
    SetIds(3, {3, 1, 2});
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(folder.Read("mesh.sur"), Bytes(kGood));
}

TEST_F(SearchFile, TellsHowLongTheWritingTook) {
    fake::TheClock() = {100.0, 0.25};
    Write();
    fake::TheClock() = {};
    EXPECT_EQ(said, "Write Search Result end \nWriteSearchResult: 0.25 seconds\n");
}

TEST_F(SearchFile, IsReadBackInItsOrder) {
    EXPECT_EQ(ReadFrom(Bytes(kGood)), 1);
    EXPECT_EQ(job.m_bSearchDone, 1);
    EXPECT_EQ(Ids(1), (std::vector<int>{5, 1}));
    EXPECT_EQ(Ids(2), std::vector<int>{}) << "a count of 0 is an empty list";
    EXPECT_EQ(job.m_pNodeSearchResults[2].m_pPassElems, nullptr);
    EXPECT_EQ(Ids(3), (std::vector<int>{3, 1, 2}));
    EXPECT_EQ(said, "Read Search Result end \n");
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(SearchFile, AListMayHaveOneId) {
    EXPECT_EQ(ReadFrom(Bytes({1001, 3, 1, 4, 0, 0})), 1);
    EXPECT_EQ(Ids(1), std::vector<int>{4});
}

TEST_F(SearchFile, SaysNothingAtLogLevelZero) {
    job.m_nLogLevel = 0;
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(said, "");
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(said, "");
}

TEST_F(SearchFile, LongListsCrossTheBlocks) {
    StackJob big(2000, {0.0, 3.0}, {0.5, 1.5, 2.5}, 3.0);
    big.job.m_szSurFile.Set(folder.Path() + "\\big.sur");
    for (int i = 1; i <= 2000; ++i) {
        const int count = 7 * i % 301;
        auto& record = big.job.m_pNodeSearchResults.get()[i];
        record.m_nPassElems = count;
        record.m_pPassElems = std::make_unique<int[]>(static_cast<std::size_t>(count));
        for (int k = 0; k < count; ++k) {
            record.m_pPassElems.get()[k] = 1 + (i + k) % 5;
        }
    }
    WriteSearchResult(big.job);
    ASSERT_GT(folder.Read("big.sur").size(), std::size_t{1} << 20);
    big.ForgetSearches();
    ASSERT_EQ(ReadSearchResult(big.job), 1);
    for (int i = 1; i <= 2000; ++i) {
        const auto& record = big.job.m_pNodeSearchResults.get()[i];
        ASSERT_EQ(record.m_nPassElems, 7 * i % 301);
        for (int k = 0; k < record.m_nPassElems; ++k) {
            ASSERT_EQ(record.m_pPassElems.get()[k], 1 + (i + k) % 5);
        }
    }
}

TEST_F(SearchFile, AFileOfAnotherSelectionOfTheSameSizeIsAccepted) {
    job.m_pSurfNodeList[1] = 3;
    job.m_pSurfNodeList[3] = 1;
    EXPECT_EQ(ReadFrom(Bytes(kGood)), 1);
    EXPECT_EQ(Ids(1), (std::vector<int>{5, 1})) << "lists go by position";
}

TEST_F(SearchFile, BytesAfterTheLastRecordAreAccepted) {
    EXPECT_EQ(ReadFrom(Bytes(kGood) + "abcdefg"), 1);
    EXPECT_EQ(Ids(3), (std::vector<int>{3, 1, 2}));
}

TEST_F(SearchFile, AMissingFileIsToldAndSearchedInstead) {
    EXPECT_EQ(Read(), -1);
    EXPECT_EQ(job.m_bSearchDone, 0);
    EXPECT_EQ(said, "Can't open SearchFileName to read \n");
    EXPECT_TRUE(qnl::TakeFaults().empty()) << "the first run of a project has none";
}

TEST_F(SearchFile, AnotherVersionIsRefused) {
    ExpectRefusal(Bytes({1002, 3, 0, 0, 0}), "Search File version mismatch!\n");
    ExpectRefusal(Bytes({0x1001, 3, 0, 0, 0}), "Search File version mismatch!\n");
    ExpectRefusal(std::string("\0\0\x03\xE9", 4) + Bytes({3, 0, 0, 0}), "Search File version mismatch!\n");
}

TEST_F(SearchFile, AnotherNodeCountIsRefused) {
    ExpectRefusal(Bytes({1001, 4, 0, 0, 0, 0}), "file record 4 != current mesh 3\n");
    ExpectRefusal(Bytes({1001, -3, 0, 0, 0}), "file record -3 != current mesh 3\n");
}

TEST_F(SearchFile, AnEmptyFileIsDamaged) {
    ExpectDamage("", "version", "the end of the file");
    ExpectDamage(Bytes({1001}).substr(0, 3), "version", "the end of the file");
}

TEST_F(SearchFile, AFileThatEndsWithinItsHeadIsDamaged) {
    ExpectDamage(Bytes({1001}), "number of records", "the end of the file");
    ExpectDamage(Bytes({1001, 3}).substr(0, 7), "number of records", "the end of the file");
}

TEST_F(SearchFile, AFileThatEndsBeforeACountIsDamaged) {
    ExpectDamage(Bytes({1001, 3, 1, 5}), "record 2 of 3", "the end of the file");
}

TEST_F(SearchFile, AFileThatEndsWithinAListIsDamaged) {
    ExpectDamage(Bytes({1001, 3, 1, 5, 2, 4, 4}).substr(0, 27), "record 2 of 3", "the end of the file");
}

TEST_F(SearchFile, ANegativeCountIsDamage) {
    ExpectDamage(Bytes({1001, 3, 1, 5, -1, 0, 0}), "record 2 of 3", "a negative count");
    ExpectDamage(Bytes({1001, 3, 0x80000000, 5, 0, 0, 0}), "record 1 of 3", "a negative count");
}

TEST_F(SearchFile, AnIdOutsideTheMeshIsDamage) {
    ExpectDamage(Bytes({1001, 3, 0, 0, 1, 6}), "record 3 of 3", "an id outside the mesh");
    ExpectDamage(Bytes({1001, 3, 1, 0, 0, 0}), "record 1 of 3", "an id outside the mesh");
    ExpectDamage(Bytes({1001, 3, 1, -2, 0, 0}), "record 1 of 3", "an id outside the mesh");
}

TEST_F(SearchFile, ACountThatTheFileDoesNotHoldAllocatesNothing) {
    if (!CountsAllocations()) {
        GTEST_SKIP() << "this build keeps operator new for itself";
    }
    folder.Write("mesh.sur", Bytes({1001, 3, 0x7FFFFFFF, 5, 5, 5}));
    job.m_nLogLevel = 0;
    ForgetLargestAllocation();
    EXPECT_EQ(ReadSearchResult(job), -1);
    EXPECT_LT(LargestAllocation(), std::size_t{1} << 20);
}

TEST_F(SearchFile, AFileThatCannotBeWrittenIsToldAndRecorded) {
    job.m_szSurFile.Set(folder.Path() + "\\missing\\mesh.sur");
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(said, "Can't open SearchFileName \n");
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(SearchFile, WritingReplacesAnEarlierFile) {
    folder.Write("mesh.sur", std::string(1000, 'x'));
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(folder.Read("mesh.sur"), Bytes({1001, 3, 0, 0, 0}));
}

TEST_F(SearchFile, WithoutNodesHoldsTheHeadOnly) {
    job.m_nSurfaceNodes = 0;
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(folder.Read("mesh.sur"), Bytes({1001, 0}));
    EXPECT_EQ(Read(), 1);
}

#ifdef __linux__
TEST_F(SearchFile, AFullDiskIsToldAndTheEndMessageFollows) {
    job.m_szSurFile.Set("/dev/full");
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(said.substr(0, 50), "Cannot close *.sur file \nWrite Search Result end \n");
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}
#endif
