#include "output/BinaryResult.h"

#include <gtest/gtest.h>

#include <array>

#include "context/OutputQuantities.h"
#include "support/CapturedOutput.h"
#include "unit/output/RecordedWriter.h"

namespace {

using Nodes = std::vector<qnl::NodeId>;

/// Three nodes with the labels 3, 7 and 5. The map leads labels 3 and 5 each to the other's node; node 3,
/// with label 5, lies on the runner. Every array an item may come from exists and holds zeros.
class BinaryResult : public ::testing::Test {
protected:
    BinaryResult() {
        job_.m_nNodes = 3;
        job_.m_nMaxLabel = 7;
        job_.p_Node = nodes_.data();
        job_.m_pNodeGlobalIdToLocal = toLocal_.data();
        job_.m_pNotRunnerNode = classes_.data();
        job_.m_szResultFile.Set("part1.fzr");
        job_.m_szMeshFile.Set("Mesh\\a.hdf");
        job_.m_szMaterialFile.Set("Material\\b.toml");
        for (const qnl::OutputQuantity& quantity : qnl::kOutputQuantities) {
            job_.*quantity.array = std::make_unique<double[]>(4);
        }
        for (int node = 1; node <= 3; ++node) {
            job_.m_pCenterTemperature[node] = 20.0 * node;
        }
        TheWriting() = {};
    }

    const std::array<NodeRecord, 4> nodes_{{{}, {0, 0, 0, 3, 0}, {0, 0, 0, 7, 0}, {0, 0, 0, 5, 0}}};
    const std::array<int, 8> toLocal_{0, 0, 0, 3, 0, 1, 0, 2};
    const std::array<int, 8> classes_{0, 0, 0, 1, 0, 0, 0, 1};
    FrozenLayerJob job_;
};

}  // namespace

TEST_F(BinaryResult, DescribesTheFileAndThenWritesLabelsAndItems) {
    EXPECT_EQ(qnl::output::WriteBinaryResult(job_), 1);
    EXPECT_EQ(
        TheWriting().calls,
        (std::vector<std::string>{
            "BeginWriting part1.fzr '' 1", "SetHeadInfo 1004 802218888 Mesh\\a.hdf Material\\b.toml .pro 0 5",
            "SetFileInfo QNL3DFrozenLayer 1000 1000 1000", "SetMultipleTimeStepOutputInfo 0 0.01 --",
            "SetResultTypeInfo 3 0 0 0 0 0 0 0", "SetResultDataIDMap 1 1", "SetResultItemInfo",
            "SetMaxMinInfo", "SetResultOrigin", "WriteResultDataIDArray 1", "WriteResultItem 1",
            "WriteResultItem 2", "WriteResultItem 3", "WriteResultItem 4", "WriteResultItem 5",
            "EndWriting"}));
}

TEST_F(BinaryResult, TheHeadTellsTheMode) {
    job_.m_options.mode = qnl::Mode::Resolved;
    qnl::output::WriteBinaryResult(job_);
    EXPECT_EQ(TheWriting().calls[1], "SetHeadInfo 1004 802218888 Mesh\\a.hdf Material\\b.toml .pro " +
                                         std::to_string(static_cast<int>(qnl::Mode::Resolved)) + " 5");
    EXPECT_NE(static_cast<int>(qnl::Mode::Resolved), 0);
}

/// Names of the inputs that the result was said to be made from, with their roles.
std::vector<std::string> RecordedInputs() {
    std::vector<std::string> inputs;
    for (const qnl::ResultInput& input : TheWriting().origin.inputs) {
        inputs.push_back(std::string(NameOf(input.role)) + " " + input.name);
    }
    return inputs;
}

TEST_F(BinaryResult, TellsWhatItIsMadeFromWithoutFolders) {
    job_.m_szRunFile.Set("a folder\\Analysis\\Run1\\part1.run");
    job_.m_szLogFile.Set("a folder\\Analysis\\Run1\\part1.lgz");
    job_.m_szInputResult = "a folder\\Analysis\\Run1\\part1.k4f";
    job_.m_stageFile = "a folder/Analysis/Run1/part1_002.k4f";
    job_.m_nAnalysisType = 7;
    job_.m_nLogLevel = 2;
    qnl::output::WriteBinaryResult(job_);
    const std::vector<std::string> always{"mesh a.hdf", "material b.toml", "run_file part1.run",
                                          "stage part1_002.k4f"};
    EXPECT_EQ(RecordedInputs(), always);
    EXPECT_EQ(TheWriting().origin.analysisCode, 7);
    EXPECT_TRUE(TheWriting().origin.diagnostics);

    job_.m_bHasFlow = 1;
    job_.m_bHasIntermediateTimes = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    job_.m_bIsGasIn = 1;
    qnl::output::WriteBinaryResult(job_);
    std::vector<std::string> all = always;
    all.insert(all.end(), {"marker_log QNLIntermediateOutputTime.log", "fibre_at_base part1.k4o",
                           "fibre part1_002.k4o", "thickness a.thk"});
    EXPECT_EQ(RecordedInputs(), all);
}

TEST_F(BinaryResult, ItemsComeWithTextsTypeAndLimits) {
    qnl::output::WriteBinaryResult(job_);
    ASSERT_EQ(TheWriting().items.size(), 5U);
    EXPECT_EQ(TheWriting().items[0], "1 Frozen_Ratio -- 1 0 0");
    EXPECT_EQ(TheWriting().items[2], "3 Center_Temperature oC 1 60 20");
}

TEST_F(BinaryResult, ItemsThatAreNotShownAreLeftOut) {
    job_.m_bHasCool = 1;
    qnl::output::WriteBinaryResult(job_);
    std::vector<std::string> numbers;
    for (const std::string& item : TheWriting().items) {
        numbers.push_back(item.substr(0, item.find(' ')));
    }
    EXPECT_EQ(numbers, (std::vector<std::string>{"1", "2", "3", "4", "7", "8"}));
    EXPECT_EQ(TheWriting().values.size(), 6U);
}

TEST_F(BinaryResult, RecordsBehindTheTableAreNotLookedAt) {
    job_.m_pOutputItems = std::make_unique<qnl::OutputItem[]>(21);
    qnl::OutputItem& behind = job_.m_pOutputItems[20];
    behind.bOutput = 1;
    behind.pData = job_.m_pMaxTemperature.get();
    qnl::output::WriteBinaryResult(job_);
    EXPECT_EQ(TheWriting().values.size(), 5U);
    EXPECT_EQ(behind.dMax, -1000.0) << "the values are 0";
}

TEST_F(BinaryResult, ValuesAreThoseOfTheNodeThatTheLabelMapNames) {
    qnl::output::WriteBinaryResult(job_);
    EXPECT_EQ(TheWriting().labels, (std::vector<int>{3, 7, 5}));
    EXPECT_EQ(TheWriting().values[3], (std::vector<float>{60.0F, 40.0F, 20.0F}));
}

TEST_F(BinaryResult, LogsBeginningAndEnd) {
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    qnl::output::WriteBinaryResult(job_);
    const std::string text = output.Text();
    EXPECT_NE(text.find("SetOutputItermInfor end\nWrite Binary Result\nOutput Binary Data end\n"),
              std::string::npos)
        << text;
}

TEST_F(BinaryResult, ClassicWritesNodesWithACentreTemperatureAboveOne) {
    job_.m_pCenterTemperature[1] = 1.0;
    job_.m_pCenterTemperature[2] = 0.5;
    job_.m_pCenterTemperature[3] = 1.0000001;
    EXPECT_EQ(qnl::output::SelectOutputNodes(job_), Nodes{qnl::NodeId(3)});
}

TEST_F(BinaryResult, CorrectedWritesPartNodesThatHadAProfile) {
    job_.m_options.mode = qnl::Mode::Corrected;
    EXPECT_EQ(qnl::output::SelectOutputNodes(job_), Nodes{}) << "no node has been evaluated yet";
    job_.m_pHasProfile = std::make_unique<unsigned char[]>(4);
    job_.m_pHasProfile[2] = 1;
    job_.m_pHasProfile[3] = 1;
    EXPECT_EQ(qnl::output::SelectOutputNodes(job_), Nodes{qnl::NodeId(2)})
        << "node 1 had no profile, node 3 lies on the runner";
}
