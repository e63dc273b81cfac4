#include "input/FlowResults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "input/FlowSpeed.h"
#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

using Calls = std::vector<std::string>;

class FlowBinary : public InputTest {
protected:
    FlowBinary() {
        job_.m_bHasFlow = 1;
        file_ = &BinaryFile("p.k4f");
        file_->maxNode = 17;
        file_->itemIds = {6, 14};
        for (const int item : {6, 9, 11, 12, 13, 14, 16, 17}) {
            Item(item).assign(17, 0.0F);
        }
    }
    std::vector<float>& Item(int item) { return file_->items[item]; }
    void SetItem(int item, int label, float value) {
        Item(item)[static_cast<std::size_t>(label) - 1] = value;
    }

    fake::ResultFile* file_ = nullptr;
};

TEST_F(FlowBinary, StoresPartNodesAtTheirIndex) {
    MakeStorage();
    for (const int label : {1, 2, 3, 12, 17}) {
        SetItem(6, label, 100.0F + static_cast<float>(label));
        SetItem(14, label, 0.25F);
    }
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{101.0, 102.0, -7.0, -7.0, 117.0}));
    EXPECT_EQ(Slot(1), (std::vector<double>{0.25, 0.25, -7.0, -7.0, 0.25}));
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(FlowBinary, CorrectedRunsStoreEveryKnownNode) {
    job_.m_options.mode = qnl::Mode::Corrected;
    MakeStorage();
    for (const int label : {1, 2, 3, 12, 17}) {
        SetItem(6, label, 100.0F + static_cast<float>(label));
    }
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{101.0, 102.0, 103.0, 112.0, 117.0}));
}

TEST_F(FlowBinary, WidensSinglePrecision) {
    MakeStorage();
    SetItem(6, 1, 0.1F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(Data(0, 1), static_cast<double>(0.1F));
}

TEST_F(FlowBinary, CallsTheLibraryInOrder) {
    job_.m_bHasIntermediateTimes = 1;
    job_.m_nAnalysisType = 6;
    file_->itemIds = {6, 14, 16};
    MakeStorage();
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(fake::ThePlatform().calls,
              (Calls{"construct", "BeginReading p.k4f null", "GetResultVersion", "GetHeadInfo",
                     "GetResultItemInfo", "GetMaxCavityNode", "GetResultItem 6", "GetResultItem 11",
                     "GetResultItem 12", "GetResultItem 13", "GetResultItem 14", "GetResultItem 17",
                     "GetResultItem 9", "GetResultItem 16", "EndReading", "destroy"}));
}

TEST_F(FlowBinary, ReadsOnlyTheItemsThatTheFlagsAskFor) {
    MakeStorage();
    ReadFlowResults(job_, "p.k4f");
    const Calls& calls = fake::ThePlatform().calls;
    for (const char* item : {"GetResultItem 17", "GetResultItem 9", "GetResultItem 16"}) {
        EXPECT_EQ(std::count(calls.begin(), calls.end(), item), 0) << item;
    }
}

TEST_F(FlowBinary, WithoutCoolingTimeItemTheCoolingTimeIsZero) {
    MakeStorage();
    SetItem(16, 1, 5.0F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(Slot(4), (std::vector<double>{0.0, 0.0, -7.0, -7.0, 0.0}));
    EXPECT_EQ(job_.m_bFillHasCoolingTime, 0);
}

TEST_F(FlowBinary, CoolingTimeItemIsReadWhenListed) {
    file_->itemIds = {16, 6};
    MakeStorage();
    SetItem(16, 2, 5.0F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(job_.m_bFillHasCoolingTime, 1);
    EXPECT_EQ(Data(4, 2), 5.0);
}

TEST_F(FlowBinary, WithoutGasEveryPartNodeIsMarkedSo) {
    job_.m_nAnalysisType = 2;
    MakeStorage();
    SetItem(9, 1, 0.5F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(job_.m_bIsGasIn, 0);
    EXPECT_EQ(Slot(2), (std::vector<double>{-100.0, -100.0, -7.0, -7.0, -100.0}));
}

TEST_F(FlowBinary, GasValuesOfGasAnalyses) {
    for (const int type : {1, 6, 7, 8}) {
        job_.m_bIsGasIn = 0;
        job_.m_nAnalysisType = type;
        MakeStorage();
        SetItem(9, 1, 0.5F);
        SetItem(9, 2, -1.0F);
        ReadFlowResults(job_, "p.k4f");
        EXPECT_EQ(job_.m_bIsGasIn, 1);
        EXPECT_EQ(Data(2, 1), 0.5);
        EXPECT_EQ(Data(2, 2), -100.0);
    }
}

TEST_F(FlowBinary, NodeAtRestHasTheLeastSpeed) {
    MakeStorage();
    SetItem(11, 1, 1e-4F);  // its square rounds to 1e-8 in single precision, which is below 1e-8
    SetItem(11, 2, 1.1e-4F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(Data(3, 5), 1e-8);
    const float square1 = 1e-4F * 1e-4F;
    EXPECT_EQ(Data(3, 1),
              static_cast<double>(square1) > 1e-8 ? std::sqrt(static_cast<double>(square1)) : 1e-8);
    const float square2 = 1.1e-4F * 1.1e-4F;
    EXPECT_EQ(Data(3, 2), std::sqrt(static_cast<double>(square2)));
}

TEST_F(FlowBinary, SpeedIsTheLengthOfTheVelocity) {
    MakeStorage();
    SetItem(11, 1, 1.0F);
    SetItem(12, 1, 2.0F);
    SetItem(13, 1, 2.0F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(Data(3, 1), 3.0);
    EXPECT_EQ(qnl::input::SpeedFromSquare(1e-8), 1e-8) << "the limit of the squares counts as rest";
}

TEST_F(FlowBinary, SpeedSquaresAreSummedInSinglePrecision) {
    MakeStorage();
    SetItem(11, 1, 4097.0F);
    SetItem(12, 1, 1.0F);
    SetItem(13, 1, 0.5F);
    ReadFlowResults(job_, "p.k4f");
    const float square = 4097.0F * 4097.0F + 1.0F * 1.0F + 0.5F * 0.5F;
    EXPECT_EQ(square, 16785408.0F);
    EXPECT_EQ(Data(3, 1), std::sqrt(16785408.0));
    EXPECT_EQ(Vector(0, 1), 4097.0F);
    EXPECT_EQ(Vector(1, 1), 1.0F);
    EXPECT_EQ(Vector(2, 1), 0.5F);
}

TEST_F(FlowBinary, WithoutFlowFlagVelocitiesAreNotKept) {
    job_.m_bHasFlow = 0;
    MakeStorage();
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), 1);
    EXPECT_FALSE(job_.m_pNodeVector[0]);
}

TEST_F(FlowBinary, IntermediateTimesRaiseTheMaximumAndReadDensity) {
    job_.m_bHasIntermediateTimes = 1;
    MakeStorage();
    SetItem(14, 2, 3.5F);
    SetItem(14, 3, 9.0F);  // runner node
    SetItem(17, 2, 0.95F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(job_.m_dMaxValue, 3.5);
    EXPECT_EQ(Data(5, 2), static_cast<double>(0.95F));
}

TEST_F(FlowBinary, WithoutIntermediateTimesTheMaximumStays) {
    MakeStorage();
    SetItem(14, 2, 3.5F);
    SetItem(17, 2, 0.95F);
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(job_.m_dMaxValue, -1e8);
    EXPECT_EQ(Data(5, 2), -7.0);
}

TEST_F(FlowBinary, MissingItemsAreZero) {
    file_->items.clear();
    job_.m_bHasIntermediateTimes = 1;
    MakeStorage();
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), 1);
    EXPECT_EQ(Data(0, 1), 0.0);
    EXPECT_EQ(Data(1, 1), 0.0);
    EXPECT_EQ(Data(5, 1), 0.0);
    for (int k = 0; k < 3; ++k) {
        EXPECT_EQ(Vector(k, 1), 0.0F) << k;
    }
}

TEST_F(FlowBinary, ShorterFileLeavesTheOtherNodesAlone) {
    file_->maxNode = 2;
    for (auto& item : file_->items) {
        item.second.assign(2, 5.0F);
    }
    MakeStorage();
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(Slot(0), (std::vector<double>{5.0, 5.0, -7.0, -7.0, -7.0}));
}

TEST_F(FlowBinary, EntriesBeyondTheLabelsAreAFault) {
    file_->maxNode = 30;
    for (auto& item : file_->items) {
        item.second.assign(30, 5.0F);
    }
    MakeStorage();
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), 1);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].file, "p.k4f");
    EXPECT_EQ(faults[0].expected, "ids from 1 to 17");
    EXPECT_EQ(faults[0].found, "13 ids outside, the first 18");
}

TEST_F(FlowBinary, HostileCountsDoNoHarm) {
    file_->maxNode = -5;
    file_->itemIds.clear();
    file_->itemCount = -3;
    for (auto& item : file_->items) {
        item.second.clear();
    }
    MakeStorage();
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), 1);
    EXPECT_EQ(Data(0, 1), -7.0);
}

TEST_F(FlowBinary, LogsItsProgress) {
    job_.m_nLogLevel = 1;
    job_.m_nAnalysisType = 1;
    file_->itemIds = {6, 16};
    MakeStorage();
    const CapturedOutput output;
    ReadFlowResults(job_, "p.k4f");
    EXPECT_EQ(output.Text(),
              "Read FlowResults by Binary \nK4Fverson =7 \nis GasIN  \nnItemCount = 2 \n"
              "is FillHasCoolingTime \n nMaxNodes = 17 \n");
}

TEST_F(FlowBinary, IsSilentAtLogLevelZero) {
    MakeStorage();
    const CapturedOutput output;
    ReadFlowResults(job_, "p.k4f");
    ReadFlowResults(job_, "other.k4f");
    EXPECT_EQ(output.Text(), "");
}

TEST_F(FlowBinary, AFileThatCannotBeOpenedFails) {
    job_.m_nLogLevel = 1;
    MakeStorage();
    file_->status = -3;
    const CapturedOutput output;
    EXPECT_EQ(ReadFlowResults(job_, "p.k4f"), -1);
    EXPECT_EQ(output.Text(), "Can't open FlowResults \nFileError = -3 \n");
    EXPECT_EQ(fake::ThePlatform().calls, (Calls{"construct", "BeginReading p.k4f null", "destroy"}));
}

class FlowAscii : public InputTest {
protected:
    FlowAscii() { job_.m_bHasFlow = 1; }

    /// A file with these records; `code` is the head code.
    std::string File(int code, int count, const std::string& records) {
        return TextFile("p.k4f", "1\n[HEADER]\n" + std::to_string(code) +
                                     "  9104\nmesh\nmaterial\n.pro\n0\n" + std::to_string(count) +
                                     " 7 0\n[TIME STEPS]\n2 \n0.5\n1.5\n[RESULTS EOF]\n" + records +
                                     "[EOF]\n");
    }
};

const char* const kColumns1 = "1 0 0 230.5 0 0 3 4 0 2.5 0 0 0 0 0";

TEST_F(FlowAscii, StoresColumnsOfPartNodes) {
    MakeStorage();
    const std::string path = File(1007, 2, std::string(kColumns1) + "\n3 0 0 99 0 0 0 0 0 0 0 0 0 0 0\n");
    EXPECT_EQ(ReadFlowResults(job_, path.c_str()), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{230.5, -7.0, -7.0, -7.0, -7.0}));
    EXPECT_EQ(Data(1, 1), -7.0);
    EXPECT_EQ(Data(2, 1), -100.0);
    EXPECT_EQ(Data(3, 1), 5.0);
    EXPECT_EQ(Data(4, 1), -7.0);
    EXPECT_EQ(Data(5, 1), -7.0);
    EXPECT_EQ(Vector(0, 1), 3.0F);
    EXPECT_EQ(Vector(1, 1), 4.0F);
    EXPECT_EQ(Vector(2, 1), 0.0F);
    EXPECT_EQ(job_.m_bIsGasIn, 0);
    EXPECT_EQ(job_.m_nAsciiItemCount, 2);
    EXPECT_STREQ(job_.m_szTimeSteps, "0.5\n1.5\n");
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(FlowAscii, HeadCode1007HasFourteenNumbers) {
    MakeStorage();
    const std::string records = std::string(kColumns1) + "\n2 0 0 240 0 0 0 0 0 0 0 0 0 0 0\n";
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1007, 2, records).c_str()), 1);
    EXPECT_EQ(Data(0, 2), 240.0);
    EXPECT_EQ(Data(3, 2), 1e-8);
}

TEST_F(FlowAscii, HeadCode1012HasFifteenNumbers) {
    MakeStorage();
    const std::string records =
        std::string(kColumns1) +
        " 0.75\n2 0 0 240 0 0 0 0 0 0 0 0 0 0 0 -1\n17 0 0 250 0 0 0 0 0 0 0 0 0 0 0 -1.5\n";
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1012, 3, records).c_str()), 1);
    EXPECT_EQ(job_.m_bIsGasIn, 1);
    EXPECT_EQ(Data(2, 1), 0.75);
    EXPECT_EQ(Data(2, 2), -100.0);
    EXPECT_EQ(Data(2, 5), -1.5);
}

TEST_F(FlowAscii, HeadCode1012WithFourteenNumbersFails) {
    MakeStorage();
    const std::string path = File(1012, 1, std::string(kColumns1) + "\n");
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), -1);
    EXPECT_EQ(job_.m_bIsGasIn, 1);
    EXPECT_EQ(Data(0, 1), -7.0);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].expected, "a node id and 15 numbers");
    EXPECT_EQ(ReadFlowResults(job_, path.c_str()), 1);
}

TEST_F(FlowAscii, AColumnThatBreaksOffIsNotMadeUpForByWhatFollows) {
    MakeStorage();
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1012, 1, "1 0 0 - 0.75\n").c_str()), -1);
    EXPECT_EQ(Data(0, 1), -7.0);
}

TEST_F(FlowAscii, WithoutFlowFlagVelocitiesAreNotKept) {
    job_.m_bHasFlow = 0;
    MakeStorage();
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1007, 1, std::string(kColumns1) + "\n").c_str()), 1);
    EXPECT_EQ(Data(3, 1), 5.0);
    EXPECT_FALSE(job_.m_pNodeVector[0]);
}

TEST_F(FlowAscii, IntermediateTimesReplaceTheGasValueByColumn9) {
    job_.m_bHasIntermediateTimes = 1;
    MakeStorage();
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1012, 1, std::string(kColumns1) + " 0.75\n").c_str()), 1);
    EXPECT_EQ(Data(1, 1), 2.5);
    EXPECT_EQ(Data(2, 1), 2.5);
    EXPECT_EQ(job_.m_dMaxValue, 2.5);
    EXPECT_EQ(job_.m_bIsGasIn, 1);
}

TEST_F(FlowAscii, Column9OfMinusOneIsNoGasMark) {
    job_.m_bHasIntermediateTimes = 1;
    MakeStorage();
    ReadFlowResultsAscii(job_, File(1007, 1, "1 0 0 230 0 0 0 0 0 -1 0 0 0 0 0\n").c_str());
    EXPECT_EQ(Data(2, 1), -1.0);
    EXPECT_EQ(job_.m_bIsGasIn, 1);
}

TEST_F(FlowAscii, SpeedIsFormedInDoublePrecision) {
    MakeStorage();
    ReadFlowResultsAscii(job_, File(1007, 1, "1 0 0 230 0 0 0.1 0.2 0.3 0 0 0 0 0 0\n").c_str());
    EXPECT_EQ(Data(3, 1), std::sqrt(0.1 * 0.1 + 0.2 * 0.2 + 0.3 * 0.3));
    EXPECT_EQ(Vector(0, 1), 0.1F);
    EXPECT_EQ(Vector(1, 1), 0.2F);
    EXPECT_EQ(Vector(2, 1), 0.3F);
}

TEST_F(FlowAscii, RunnerNodesThatAreStoredAreClearedInStageOne) {
    isPart_[3] = isPart_[12] = 1;
    const std::string records =
        "3 0 0 99 0 0 0 0 0 0 0 0 0 0 0 0.5\n12 0 0 98 0 0 0 0 0 0 0 0 0 0 0 0.5\n1 0 0 97 0 0 0 0 0 0 0 0 0 "
        "0 0 "
        "0.5\n";
    const std::string path = File(1012, 3, records);
    MakeStorage();
    ReadFlowResultsAscii(job_, path.c_str());
    EXPECT_EQ(Slot(0), (std::vector<double>{97.0, -7.0, 99.0, 1000.0, -7.0}));
    EXPECT_EQ(Slot(2), (std::vector<double>{0.5, -7.0, 0.5, -100.0, -7.0}));
    job_.m_nStage = 1;
    ReadFlowResultsAscii(job_, path.c_str());
    EXPECT_EQ(Slot(0), (std::vector<double>{97.0, -7.0, 1000.0, 1000.0, -7.0}));
    EXPECT_EQ(Slot(2), (std::vector<double>{0.5, -7.0, -100.0, -100.0, -7.0}));
}

TEST_F(FlowAscii, CorrectedRunsKeepRunnerValues) {
    job_.m_options.mode = qnl::Mode::Corrected;
    job_.m_bHasIntermediateTimes = 1;
    job_.m_nStage = 1;
    MakeStorage();
    const std::string records = "3 0 0 99 0 0 0 0 0 4 0 0 0 0 0\n12 0 0 98 0 0 0 0 0 5 0 0 0 0 0\n";
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1007, 2, records).c_str()), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{-7.0, -7.0, 99.0, 98.0, -7.0}));
    EXPECT_EQ(job_.m_dMaxValue, 5.0);
}

TEST_F(FlowAscii, AMissingFileFails) {
    MakeStorage();
    const std::string path = PathTo("none.k4f");
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), -1);
    BinaryFile(path).status = -4;
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    EXPECT_EQ(ReadFlowResults(job_, path.c_str()), 1);
    EXPECT_EQ(output.Text(), "Read FlowResults by ASCII \n");
    EXPECT_EQ(qnl::TakeFaults().size(), 2U);
}

struct BadRecord {
    const char* name;
    const char* text;
};

TEST_F(FlowAscii, ShortAndMalformedRecordsFailAndKeepWhatCameBefore) {
    const BadRecord records[] = {
        {"no id", "x"},
        {"id too large", "2147483648 0 0 1 0 0 0 0 0 0 0 0 0 0 0"},
        {"hexadecimal id", "0x2 0 0 1 0 0 0 0 0 0 0 0 0 0 0"},
        {"thirteen numbers", "2 0 0 1 0 0 0 0 0 0 0 0 0 0\n[EOF]"},
        {"hexadecimal number", "2 0 0 0x1p4 0 0 0 0 0 0 0 0 0 0 0"},
        {"infinite number", "2 0 0 inf 0 0 0 0 0 0 0 0 0 0 0"},
        {"not a number", "2 0 0 nan 0 0 0 0 0 0 0 0 0 0 0"},
        {"number out of range", "2 0 0 1e400 0 0 0 0 0 0 0 0 0 0 0"},
        {"end of file", ""},
    };
    for (const BadRecord& record : records) {
        MakeStorage();
        qnl::TakeFaults();
        const std::string path = File(1007, 2, std::string(kColumns1) + "\n" + record.text + "\n");
        EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), -1) << record.name;
        EXPECT_EQ(Slot(0), (std::vector<double>{230.5, -7.0, -7.0, -7.0, -7.0})) << record.name;
        const std::vector<qnl::Fault> faults = qnl::TakeFaults();
        ASSERT_EQ(faults.size(), 1U) << record.name;
        EXPECT_EQ(faults[0].object.substr(0, 19), "node record 2, line") << record.name;
        EXPECT_EQ(faults[0].expected, "a node id and 14 numbers");
    }
}

TEST_F(FlowAscii, HostileNodeCountsEndWithTheFile) {
    MakeStorage();
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1007, 2147483647, std::string(kColumns1) + "\n").c_str()), -1);
    EXPECT_EQ(Data(0, 1), 230.5);
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1007, -2147483647, std::string(kColumns1) + "\n").c_str()), 1);
}

TEST_F(FlowAscii, IdsOutsideTheLabelRangeAreSkippedAndReported) {
    MakeStorage();
    const std::string tail = " 0 0 1 0 0 0 0 0 0 0 0 0 0 0\n";
    const std::string records = "-2" + tail + "0" + tail + "18" + tail + "4" + tail + kColumns1 + "\n";
    EXPECT_EQ(ReadFlowResultsAscii(job_, File(1007, 5, records).c_str()), 1);
    EXPECT_EQ(Slot(0), (std::vector<double>{230.5, -7.0, -7.0, -7.0, -7.0}));
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].found, "3 ids outside, the first -2");
}

TEST_F(FlowAscii, WithoutHeaderNoRecordsAreRead) {
    MakeStorage();
    const std::string path = TextFile("p.k4f", "[RESULTS EOF]\n" + std::string(kColumns1) + "\n");
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), -7.0);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "[RESULTS EOF]");
}

TEST_F(FlowAscii, AnEmptyFileAndOneWithoutMarkersAreReadAsNothing) {
    MakeStorage();
    EXPECT_EQ(ReadFlowResultsAscii(job_, TextFile("a.k4f", "").c_str()), 1);
    EXPECT_EQ(ReadFlowResultsAscii(job_, TextFile("b.k4f", std::string(5000, '\0') + "\n\n").c_str()), 1);
    EXPECT_EQ(qnl::TakeFaults().size(), 2U);
}

TEST_F(FlowAscii, AMarkerOnTheFourthLineBehindTheHeaderCounts) {
    MakeStorage();
    const std::string path =
        TextFile("p.k4f", "[HEADER]\n1007 1\na\nb\nc\n[RESULTS EOF]\n1\n" + std::string(kColumns1) + "\n");
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), 230.5);
}

TEST_F(FlowAscii, TimeStepsOnTheFourthLineBehindTheHeaderCount) {
    MakeStorage();
    const std::string path =
        TextFile("p.k4f", "[HEADER]\n1007 1\na\nb\nc\n[TIME STEPS]\n1\n2 \nx\ny\n[RESULTS EOF]\n" +
                              std::string(kColumns1) + "\n");
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(job_.m_nAsciiItemCount, 2);
    EXPECT_STREQ(job_.m_szTimeSteps, "x\ny\n");
    EXPECT_EQ(Data(0, 1), 230.5);
}

TEST_F(FlowAscii, CountsThatCannotBeReadKeepWhatAnEarlierSectionGave) {
    MakeStorage();
    const std::string path = TextFile("p.k4f",
                                      "[HEADER]\n1007 1\na\nb\nc\nd\n1\n[HEADER]\n1007 1\na\nb\nc\nd\nnone\n"
                                      "[TIME STEPS]\n2 \nx\ny\n[TIME STEPS]\nz\nw\n[RESULTS EOF]\n" +
                                          std::string(kColumns1) + "\n");
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), 230.5) << "the number of records";
    EXPECT_EQ(job_.m_nAsciiItemCount, 2);
    EXPECT_STREQ(job_.m_szTimeSteps, "z\nw\n");
}

TEST_F(FlowAscii, MarkersMayHaveTextAroundThem) {
    MakeStorage();
    const std::string path = TextFile(
        "p.k4f", "a [HEADER] b\n1007 1 \n\n a\nb\nc\nd\n1\n-- [RESULTS EOF] --\n" + std::string(kColumns1));
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), 230.5);
}

TEST_F(FlowAscii, CarriageReturnsAreWhiteSpace) {
    MakeStorage();
    const std::string path = TextFile(
        "p.k4f", "[HEADER]\r\n1007 1\r\na\r\nb\r\nc\r\nd\r\n1\r\n[RESULTS EOF]\r\n" + std::string(kColumns1));
    EXPECT_EQ(ReadFlowResultsAscii(job_, path.c_str()), 1);
    EXPECT_EQ(Data(0, 1), 230.5);
}

TEST_F(FlowAscii, TimeStepTextOfUpTo1023BytesIsStored) {
    MakeStorage();
    const std::string fits = std::string(1022, 't') + "\n";
    EXPECT_EQ(ReadFlowResultsAscii(job_, TextFile("a.k4f", "[TIME STEPS]\n1 \n" + fits).c_str()), 1);
    EXPECT_EQ(job_.m_szTimeSteps, fits);
    const std::string tooLong = std::string(1023, 'u') + "\n";
    EXPECT_EQ(ReadFlowResultsAscii(job_, TextFile("b.k4f", "[TIME STEPS]\n2 \n" + tooLong).c_str()), 1);
    EXPECT_EQ(job_.m_szTimeSteps, fits);
    EXPECT_EQ(job_.m_nAsciiItemCount, 2);
}

TEST_F(FlowAscii, TooManyTimeStepLinesEndWithTheFile) {
    MakeStorage();
    EXPECT_EQ(ReadFlowResultsAscii(job_, TextFile("a.k4f", "[TIME STEPS]\n2147483647 \nx\ny").c_str()), 1);
    EXPECT_STREQ(job_.m_szTimeSteps, "x\ny");
}

TEST_F(FlowAscii, HugeTimeStepTextIsPassedOverAndTheRecordsAreRead) {
    MakeStorage();
    std::string text = "[HEADER]\n1007 1\na\nb\nc\nd\n1\n[TIME STEPS]\n5000 \n";
    for (int i = 0; i < 5000; ++i) {
        text += "a time step\n";
    }
    EXPECT_EQ(ReadFlowResultsAscii(job_, TextFile("a.k4f", text + "[RESULTS EOF]\n" + kColumns1).c_str()), 1);
    EXPECT_STREQ(job_.m_szTimeSteps, "");
    EXPECT_EQ(Data(0, 1), 230.5);
}

}  // namespace
