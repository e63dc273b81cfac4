#include "input/WarpResults.h"

#include <gtest/gtest.h>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

using Calls = std::vector<std::string>;

class WarpBinary : public InputTest {
protected:
    WarpBinary() {
        file_ = &BinaryFile("p.k4w");
        Resize(17);
    }
    void Resize(int entries) {
        file_->maxNode = entries;
        for (const int item : {1, 2, 3, 7}) {
            file_->items[item].resize(static_cast<std::size_t>(entries));
        }
    }
    void SetItem(int item, int label, float value) {
        file_->items[item][static_cast<std::size_t>(label) - 1] = value;
    }
    double Displacement(int k, int node) const { return job_.m_pWarpDisplacement[k].get()[node]; }

    fake::ResultFile* file_ = nullptr;
};

TEST_F(WarpBinary, StoresEveryNodeOutsideThePartToo) {
    MakeStorage();
    for (int k = 0; k < 3; ++k) {
        SetItem(k + 1, 12, 0.5F + static_cast<float>(k));
    }
    SetItem(7, 12, 3.25F);
    SetItem(7, 17, 1.0F);
    EXPECT_EQ(ReadWarpResults(job_, "p.k4w"), 1);
    EXPECT_EQ(Displacement(0, 4), 0.5);
    EXPECT_EQ(Displacement(1, 4), 1.5);
    EXPECT_EQ(Displacement(2, 4), 2.5);
    EXPECT_EQ(Slot(1), (std::vector<double>{0.0, 0.0, 0.0, 3.25, 1.0}));
    EXPECT_EQ(Slot(0), std::vector<double>(5, -7.0));
    EXPECT_EQ(job_.m_dMaxValue, 3.25);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(WarpBinary, TheMaximumIsOnlyRaised) {
    job_.m_dMaxValue = 4.0;
    MakeStorage();
    SetItem(7, 1, 3.0F);
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(job_.m_dMaxValue, 4.0);
}

TEST_F(WarpBinary, CallsTheLibraryInOrder) {
    MakeStorage();
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(fake::ThePlatform().calls,
              (Calls{"construct", "BeginReading p.k4w null", "GetMaxCavityNode", "GetResultItem 1",
                     "GetResultItem 2", "GetResultItem 3", "GetResultItem 7", "EndReading", "destroy"}));
}

TEST_F(WarpBinary, DisplacementHasRoomForFileAndMesh) {
    MakeStorage();
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(job_.m_nWarpEntries, 17);
    Resize(2);
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(job_.m_nWarpEntries, 5);
}

TEST_F(WarpBinary, DisplacementIsZeroedAtEveryTime) {
    MakeStorage();
    Resize(3);
    SetItem(1, 3, 9.0F);
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(Displacement(0, 3), 9.0);
    Resize(2);
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(Displacement(0, 3), 0.0) << "the second file does not reach this node";
}

TEST_F(WarpBinary, EntriesBeyondTheLabelsAreSkippedAndReported) {
    MakeStorage();
    Resize(19);
    SetItem(7, 19, 50.0F);
    EXPECT_EQ(ReadWarpResults(job_, "p.k4w"), 1);
    EXPECT_EQ(job_.m_dMaxValue, 0.0);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(WarpBinary, LogsItsProgress) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    const CapturedOutput output;
    ReadWarpResults(job_, "p.k4w");
    EXPECT_EQ(output.Text(), "Read WarpResults by Binary \nnMaxNodes = 17 \n");
}

TEST_F(WarpBinary, AFileThatCannotBeOpenedFails) {
    job_.m_nLogLevel = 1;
    file_->status = -2;
    const CapturedOutput output;
    EXPECT_EQ(ReadWarpResults(job_, "p.k4w"), -1);
    EXPECT_EQ(output.Text(), "Can't open Warp Results \nFileError = -2 \n");
}

class WarpAscii : public InputTest {
protected:
    std::string File(int count, int values, const std::string& records) {
        return TextFile("p.k4w", "1\n[HEADER]\n1007  9104\nmesh\nmaterial\n.pro\n0\n" +
                                     std::to_string(count) + " 100 0\n" + std::to_string(values) +
                                     " 7\n0 0 0 0 1 1 1\n[RESULTS EOW]\n" + records);
    }
    /// `values` numbers, the seventh of them the shrinkage.
    static std::string Record(int id, int values, const std::string& shrinkage) {
        std::string record = std::to_string(id);
        for (int k = 1; k <= values; ++k) {
            record += k == 7 ? " " + shrinkage : " 0.5";
        }
        return record + "\n";
    }
};

TEST_F(WarpAscii, TakesTheSeventhNumberUnderTheIdAsItStands) {
    MakeStorage();
    const std::string path = File(2, 17, Record(3, 17, "3.5") + Record(4, 17, "1.5"));
    EXPECT_EQ(ReadWarpResults(job_, path.c_str()), 1);
    EXPECT_EQ(Slot(1), (std::vector<double>{-7.0, -7.0, 3.5, 1.5, -7.0}));
    EXPECT_EQ(job_.m_dMaxValue, 3.5);
    EXPECT_FALSE(job_.m_pWarpDisplacement[0]);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(WarpAscii, Node12OfALargerMesh) {
    job_.m_nNodes = 20;
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(1, 17, Record(12, 17, "3.5")).c_str()), 1);
    EXPECT_EQ(Data(1, 12), 3.5);
    EXPECT_EQ(job_.m_dMaxValue, 3.5);
}

TEST_F(WarpAscii, AllFourLayouts) {
    for (const int values : {14, 17, 26, 29}) {
        MakeStorage();
        const std::string path = File(2, values, Record(1, values, "2.5") + Record(2, values, "4.5"));
        EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
        EXPECT_EQ(Slot(1), (std::vector<double>{2.5, 4.5, -7.0, -7.0, -7.0})) << values;
    }
}

TEST_F(WarpAscii, AnotherLayoutIsLoggedOnceAndStoresNothing) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    const std::string path = File(3, 18, Record(1, 18, "2.5") + Record(2, 18, "2.5") + Record(3, 18, "2.5"));
    const CapturedOutput output;
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(output.Text(), "Warp deformation results don't match.\n");
    EXPECT_EQ(Slot(1), std::vector<double>(5, -7.0));
    EXPECT_EQ(job_.m_dMaxValue, -1e8);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(WarpAscii, WithoutRecordsNothingIsSaidOfTheLayout) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    const CapturedOutput output;
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(0, 18, "").c_str()), 1);
    EXPECT_EQ(output.Text(), "");
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "[RESULTS EOW]");
}

TEST_F(WarpAscii, CountsThatCannotBeReadKeepWhatAnEarlierHeaderGave) {
    MakeStorage();
    const std::string head = "[HEADER]\n1007 9104\nmesh\nmaterial\n.pro\n0\n";
    const std::string path =
        TextFile("p.k4w", head + "1 100 0\n14 7\n" + head + "none\n[RESULTS EOW]\n" + Record(2, 14, "2.5"));
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(1, 2), 2.5);
}

TEST_F(WarpAscii, AnotherLayoutIsSilentAtLogLevelZero) {
    MakeStorage();
    const std::string path = File(1, 0, "1\n");
    const CapturedOutput output;
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(output.Text(), "");
}

TEST_F(WarpAscii, IdsOutsideTheNodesAreSkippedAndReported) {
    MakeStorage();
    const std::string path =
        File(4, 14, Record(6, 14, "9") + Record(0, 14, "9") + Record(-3, 14, "9") + Record(5, 14, "1"));
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Slot(1), (std::vector<double>{-7.0, -7.0, -7.0, -7.0, 1.0}));
    EXPECT_EQ(job_.m_dMaxValue, 1.0);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].found, "3 ids outside, the first 6");
}

TEST_F(WarpAscii, ARecordThatBreaksOffKeepsTheLastShrinkage) {
    MakeStorage();
    const std::string path = File(3, 14, Record(1, 14, "2.5") + "2 0 0 0\nEND\n");
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Slot(1), (std::vector<double>{2.5, 2.5, -7.0, -7.0, -7.0}));
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "node record 2, line 14");
}

TEST_F(WarpAscii, ARecordWithoutIdIsReported) {
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(2, 14, Record(1, 14, "2.5") + "END\n").c_str()), 1);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object.substr(0, 13), "node record 2");
}

TEST_F(WarpAscii, TheIdOfARecordThatBreaksOffIsNotReported) {
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(2, 14, Record(1, 14, "2.5") + "99 0 0 0\nEND\n").c_str()), 1);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "node record 2, line 14");
}

TEST_F(WarpAscii, NothingIsStoredBeforeAFirstShrinkageWasRead) {
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(1, 14, "2 0 0 0\n").c_str()), 1);
    EXPECT_EQ(Slot(1), std::vector<double>(5, -7.0));
}

TEST_F(WarpAscii, ScanningGoesOnBehindABadRecordAsFarAsItCan) {
    MakeStorage();
    // The lone sign is consumed by the first failed scan; the next one starts behind it.
    const std::string path = File(3, 14, Record(1, 14, "2.5") + "- " + Record(2, 14, "4.5"));
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(1, 1), 2.5);
    EXPECT_EQ(Data(1, 2), 4.5);
}

TEST_F(WarpAscii, HostileCountsEndWithTheFile) {
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(2147483647, 14, Record(1, 14, "2.5")).c_str()), 1);
    EXPECT_EQ(Data(1, 1), 2.5);
    EXPECT_EQ(ReadWarpResultsAscii(job_, File(-1, 14, Record(2, 14, "2.5")).c_str()), 1);
    EXPECT_EQ(Data(1, 2), -7.0);
}

TEST_F(WarpAscii, AMissingFileFails) {
    const std::string path = PathTo("none.k4w");
    BinaryFile(path).status = -4;
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    EXPECT_EQ(ReadWarpResults(job_, path.c_str()), 1);
    EXPECT_EQ(ReadWarpResultsAscii(job_, path.c_str()), -1);
    EXPECT_EQ(output.Text(),
              "Read WarpResults by ASCII \nWarp results don't exist !\nWarp results don't exist !\n");
    EXPECT_EQ(qnl::TakeFaults().size(), 2U);
}

TEST_F(WarpAscii, AHeaderWithoutCountsStandsForNone) {
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, TextFile("p.k4w", "[RESULTS EOW]\n").c_str()), 1);
    const std::vector<qnl::Fault> none = qnl::TakeFaults();
    ASSERT_EQ(none.size(), 1U);
    EXPECT_EQ(none[0].object, "[RESULTS EOW]");
    const std::string head = "[HEADER]\n1007 9104\nmesh\nmaterial\n.pro\n0\n5\n";
    EXPECT_EQ(ReadWarpResultsAscii(job_, TextFile("p.k4w", head + "[RESULTS EOW]\n").c_str()), 1);
    const std::vector<qnl::Fault> mismatch = qnl::TakeFaults();
    ASSERT_EQ(mismatch.size(), 1U);
    EXPECT_EQ(mismatch[0].found, "0");
}

TEST_F(WarpAscii, WithoutMarkerNothingIsRead) {
    MakeStorage();
    EXPECT_EQ(ReadWarpResultsAscii(job_, TextFile("p.k4w", "[HEADER]\n1\n2\n3\n4\n5\n1 2 3 14 5\n").c_str()),
              1);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

}  // namespace
