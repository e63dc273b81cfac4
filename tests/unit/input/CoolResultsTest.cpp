#include "input/CoolResults.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

using Calls = std::vector<std::string>;

class CoolBinary : public InputTest {
protected:
    CoolBinary() {
        file_ = &BinaryFile("p.k4c");
        file_->maxNode = 17;
        for (const int item : {1, 2, 16}) {
            file_->items[item].assign(17, 0.0F);
        }
    }
    void SetItem(int item, int entry, float value) {
        file_->items[item][static_cast<std::size_t>(entry) - 1] = value;
    }

    fake::ResultFile* file_ = nullptr;
};

TEST_F(CoolBinary, StoresTemperatureCoolingTimeAndGas) {
    MakeStorage();
    SetItem(1, 17, 61.5F);
    SetItem(2, 17, 12.0F);
    SetItem(16, 17, 0.25F);
    SetItem(16, 1, -1.0F);
    SetItem(1, 3, 99.0F);
    EXPECT_EQ(ReadCoolResults(job_, "p.k4c"), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{0.0, 0.0, -7.0, -7.0, 61.5}));
    EXPECT_EQ(Slot(4), (std::vector<double>{0.0, 0.0, -7.0, -7.0, 12.0}));
    EXPECT_EQ(Slot(2), (std::vector<double>{-100.0, 0.0, -7.0, -7.0, 0.25}));
    for (const int untouched : {1, 3, 5}) {
        EXPECT_EQ(Data(untouched, 1), -7.0);
    }
    EXPECT_EQ(job_.m_bGasInCool, 1);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(CoolBinary, CallsTheLibraryInOrder) {
    MakeStorage();
    file_->hasMap = true;
    file_->map.assign(17, 1);
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(fake::ThePlatform().calls,
              (Calls{"construct", "BeginReading p.k4c null", "GetMaxCavityNode", "GetResultDataIDMap 1",
                     "GetResultDataIDArray 1", "GetResultItem 1", "GetResultItem 2", "GetResultItem 16",
                     "EndReading", "destroy"}));
}

TEST_F(CoolBinary, AsksForTheMapOnlyWhenThereIsOne) {
    MakeStorage();
    ReadCoolResults(job_, "p.k4c");
    const Calls& calls = fake::ThePlatform().calls;
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "GetResultDataIDArray 1"), 0);
}

TEST_F(CoolBinary, WithoutGasItemTheGasValueIsZero) {
    file_->items.erase(16);
    MakeStorage();
    EXPECT_EQ(ReadCoolResults(job_, "p.k4c"), 1);
    EXPECT_EQ(job_.m_bGasInCool, 0);
    EXPECT_EQ(Slot(2), (std::vector<double>{0.0, 0.0, -7.0, -7.0, 0.0}));
}

TEST_F(CoolBinary, GasItemWithoutMarkEndsWithoutGas) {
    SetItem(16, 1, 0.5F);
    MakeStorage();
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(job_.m_bGasInCool, 0);
    EXPECT_EQ(Data(2, 1), 0.5);
}

TEST_F(CoolBinary, AMarkAtAnyEntryCounts) {
    file_->maxNode = 20;
    for (auto& item : file_->items) {
        item.second.resize(20);
    }
    SetItem(16, 20, -1.0F);  // a label that the mesh does not have
    MakeStorage();
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(job_.m_bGasInCool, 1);
}

TEST_F(CoolBinary, TheGasFlagOfAnEarlierTimeIsClearedWithoutGasItem) {
    job_.m_bGasInCool = 1;
    file_->items.erase(16);
    MakeStorage();
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(job_.m_bGasInCool, 0);
}

TEST_F(CoolBinary, WithAMapValuesGoToTheNodesThatItNames) {
    file_->maxNode = 3;
    file_->hasMap = true;
    file_->map = {17, 2, 3};
    file_->items = {{1, {10.0F, 20.0F, 30.0F}}, {2, {1.0F, 2.0F, 3.0F}}};
    MakeStorage();
    EXPECT_EQ(ReadCoolResults(job_, "p.k4c"), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{-7.0, 20.0, -7.0, -7.0, 10.0}));
    EXPECT_EQ(Slot(4), (std::vector<double>{-7.0, 2.0, -7.0, -7.0, 1.0}));
}

TEST_F(CoolBinary, AMapThatCannotBeReadIsNotUsed) {
    file_->hasMap = true;
    file_->givesMap = false;
    SetItem(1, 2, 20.0F);
    MakeStorage();
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(Data(0, 2), 20.0);
}

TEST_F(CoolBinary, IdsOfTheMapOutsideTheLabelRangeAreSkippedAndReported) {
    file_->maxNode = 5;
    file_->hasMap = true;
    file_->map = {0, 2, -2147483647, 2147483647, 18};
    file_->items = {{1, {1.0F, 20.0F, 3.0F, 4.0F, 5.0F}}};
    MakeStorage();
    EXPECT_EQ(ReadCoolResults(job_, "p.k4c"), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{-7.0, 20.0, -7.0, -7.0, -7.0}));
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].found, "4 ids outside, the first 0");
}

TEST_F(CoolBinary, AMapMayHaveMoreRowsThanThereAreLabels) {
    file_->maxNode = 18;
    file_->hasMap = true;
    file_->map.assign(18, 1);
    file_->items = {{1, std::vector<float>(18, 5.0F)}};
    file_->items[1][17] = 20.0F;
    MakeStorage();
    EXPECT_EQ(ReadCoolResults(job_, "p.k4c"), 1);
    EXPECT_EQ(Data(0, 1), 20.0) << "of the last row";
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(CoolBinary, EntriesOfADenseFileBeyondTheLabelsAreOneFault) {
    file_->maxNode = 18;
    for (auto& item : file_->items) {
        item.second.resize(18);
    }
    MakeStorage();
    EXPECT_EQ(ReadCoolResults(job_, "p.k4c"), 1);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "node entries");
    EXPECT_EQ(faults[0].found, "1 ids outside, the first 18");
}

TEST_F(CoolBinary, CorrectedRunsStoreEveryKnownNode) {
    job_.m_options.mode = qnl::Mode::Corrected;
    SetItem(1, 3, 30.0F);
    SetItem(1, 12, 40.0F);
    MakeStorage();
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(Slot(0), (std::vector<double>{0.0, 0.0, 30.0, 40.0, 0.0}));
}

TEST_F(CoolBinary, LogsItsProgress) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    const CapturedOutput output;
    ReadCoolResults(job_, "p.k4c");
    EXPECT_EQ(output.Text(), "Read ReadCoolResults by Binary \nnMaxNodes = 17 \nGas in cool result !\n");
}

TEST_F(CoolBinary, AFileThatCannotBeOpenedFails) {
    MakeStorage();
    {
        const CapturedOutput output;
        EXPECT_EQ(ReadCoolResults(job_, "none.k4c"), -1);
        EXPECT_EQ(output.Text(), "");
    }
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    EXPECT_EQ(ReadCoolResults(job_, "none.k4c"), -1);
    EXPECT_EQ(output.Text(), "Can't open ReadCoolResults \nFileError = -1 \n");
}

class CoolAscii : public InputTest {
protected:
    std::string File(int count, const std::string& records) {
        return TextFile("p.k4c", "[HEADER]\n1007 1.5\na\nb\nc\nd\n" + std::to_string(count) +
                                     "\n[TIME STEPS]\n1 \n0.1\n[PART VOLUME DATA]\nx\ny\nz\n" + records);
    }
};

TEST_F(CoolAscii, StoresTemperatureAndCoolingTime) {
    MakeStorage();
    const std::string path = File(2, "17 230.5 12.0 0.9\n3 99 1 0\n");
    EXPECT_EQ(ReadCoolResults(job_, path.c_str()), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{-7.0, -7.0, -7.0, -7.0, 230.5}));
    EXPECT_EQ(Slot(4), (std::vector<double>{-7.0, -7.0, -7.0, -7.0, 12.0}));
    EXPECT_EQ(Slot(2), std::vector<double>(5, -7.0));
    EXPECT_STREQ(job_.m_szTimeSteps, "0.1\n");
    EXPECT_EQ(job_.m_nAsciiItemCount, 1);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(CoolAscii, RunnerNodesThatAreStoredAreCleared) {
    isPart_[3] = isPart_[12] = 1;
    const std::string path = File(2, "3 99 1 0\n12 98 2 0\n");
    MakeStorage();
    ReadCoolResultsAscii(job_, path.c_str());
    EXPECT_EQ(Slot(0), (std::vector<double>{-7.0, -7.0, 99.0, 1000.0, -7.0}));
    EXPECT_EQ(Slot(4), (std::vector<double>{-7.0, -7.0, 1.0, 2.0, -7.0}));
    job_.m_nStage = 1;
    ReadCoolResultsAscii(job_, path.c_str());
    EXPECT_EQ(Data(0, 3), 1000.0);
    EXPECT_EQ(Data(2, 3), -7.0);
    job_.m_options.mode = qnl::Mode::Corrected;
    ReadCoolResultsAscii(job_, path.c_str());
    EXPECT_EQ(Slot(0), (std::vector<double>{-7.0, -7.0, 99.0, 98.0, -7.0}));
}

TEST_F(CoolAscii, AMissingFileFails) {
    const std::string path = PathTo("none.k4c");
    BinaryFile(path).status = -4;
    MakeStorage();
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    EXPECT_EQ(ReadCoolResults(job_, path.c_str()), 1);
    EXPECT_EQ(ReadCoolResultsAscii(job_, path.c_str()), -1);
    EXPECT_EQ(output.Text(),
              "Read ReadCoolResults by ASCII \nCool results don't exist !\nCool results don't exist !\n");
    EXPECT_EQ(qnl::TakeFaults().size(), 2U);
}

TEST_F(CoolAscii, ARecordWithoutIdFails) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    const std::string path = File(3, "1 50 5 0\n[EOF]\n");
    const CapturedOutput output;
    EXPECT_EQ(ReadCoolResultsAscii(job_, path.c_str()), -1);
    EXPECT_EQ(output.Text().substr(output.Text().find("scanf")), "scanf!=1 Reading cool data file Error !\n");
    EXPECT_EQ(Data(0, 1), 50.0);
    ASSERT_EQ(qnl::TakeFaults().size(), 1U) << "what follows is not looked at";
}

TEST_F(CoolAscii, ARecordWithTooFewNumbersFails) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    for (const char* record : {"2 50 5\n[EOF]", "2 50", "2", "2 50 0x5 0", "2 nan 5 0"}) {
        const std::string path = File(2, "1 50 5 0\n" + std::string(record) + "\n");
        const CapturedOutput output;
        EXPECT_EQ(ReadCoolResultsAscii(job_, path.c_str()), -1) << record;
        EXPECT_EQ(output.Text(), "scanf!=3 Reading cool data file Error !\n") << record;
        EXPECT_EQ(Data(0, 2), -7.0) << record;
    }
    job_.m_nLogLevel = 0;
    const CapturedOutput output;
    EXPECT_EQ(ReadCoolResultsAscii(job_, File(1, "1 2").c_str()), -1);
    EXPECT_EQ(output.Text(), "");
}

TEST_F(CoolAscii, OneRecordInAnySectionIsEnough) {
    MakeStorage();
    const std::string section = "[PART VOLUME DATA]\nx\ny\nz\n";
    const std::string path = TextFile("p.k4c", "[HEADER]\n1007 1.5\na\nb\nc\nd\n1\n" + section +
                                                   "1 50 5 0\n[HEADER]\n1007 1.5\na\nb\nc\nd\n0\n" + section);
    EXPECT_EQ(ReadCoolResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), 50.0);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(CoolAscii, LongLinesAreReadInPiecesOf1023) {
    MakeStorage();
    const std::string path =
        TextFile("p.k4c", std::string(1023, 'x') +
                              "[HEADER]\n1007 1.5\na\nb\nc\nd\n1\n[PART VOLUME DATA]\nx\ny\nz\n1 50 5 0\n");
    EXPECT_EQ(ReadCoolResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), 50.0);
}

TEST_F(CoolAscii, WithoutHeaderNoRecordsAreRead) {
    MakeStorage();
    const std::string path = TextFile("p.k4c", "[PART VOLUME DATA]\nx\ny\nz\n1 50 5 0\n");
    EXPECT_EQ(ReadCoolResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), -7.0);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(CoolAscii, IdsOutsideTheLabelRangeAreSkippedAndReported) {
    MakeStorage();
    EXPECT_EQ(ReadCoolResultsAscii(job_, File(3, "18 1 1 1\n-1 1 1 1\n1 50 5 0\n").c_str()), 1);
    EXPECT_EQ(Data(0, 1), 50.0);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].found, "2 ids outside, the first 18");
}

}  // namespace
