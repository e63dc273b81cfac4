#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "job/OutputTimes.h"
#include "mesh/FieldStorage.h"
#include "platform/Faults.h"
#include "platform/Stages.h"
#include "results/ResultFile.h"
#include "results/StageItems.h"
#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"
#include "unit/sequence/OneStage.h"

namespace {

using Values = std::vector<double>;

/// A run of a base time and one intermediate time over a mesh of one node and one cell. What the stage
/// finds in the job is noted once an output time.
class CarriedState : public ::testing::Test {
protected:
    CarriedState() {
        job_.m_nNodes = 1;
        job_.m_nCells = 1;
        job_.m_nMaxLabel = 1;
        job_.m_nIntermediateTimes = 1;
        job_.p_Node = nodes_.data();
        job_.p_Cell = cells_.data();
        job_.p_Surfce = cells_.data();
        job_.m_pIsPartNodeTemp = ones_.data();
        job_.m_pNotRunnerNode = ones_.data();
        job_.m_pNodeGlobalIdToLocal = ones_.data();
        job_.m_szResultFile.Set(folder_.File("part1.fzr"));
        job_.m_szMeshFile.Set(folder_.Write("mesh.hdf", "no mesh"));
    }
    ~CarriedState() override {
        qnl::TakeFaults();
        TheStage() = nullptr;
    }

    /// The stage file of a time, by the stage's extension.
    std::string Name(int time, std::string_view extension) const {
        return "part1" + std::string(time == 0 ? "" : "_001") + std::string(extension);
    }

    void WriteItem(const std::string& name, qnl::StageKind kind, int item, float value) const {
        qnl::results::StageResult result;
        result.time = {0, 1.0F, "s"};
        result.maxNode = 1;
        result.maxElement = kind == qnl::StageKind::Fibre ? 1 : 0;
        result.items.push_back(qnl::results::MakeStageItem(kind, item, {value}));
        ASSERT_TRUE(qnl::results::WriteStageResult(folder_.File(name), result));
    }

    void WriteFlowText(int time, int headCode, const std::string& record) const {
        folder_.Write(Name(time, ".k4f"), "[HEADER]\n" + std::to_string(headCode) +
                                              " 1.0\na\nb\nc\nd\n1\n[RESULTS EOF]\n" + record + "\n");
    }

    /// What `look` sees at the base time and at the intermediate time.
    template <typename Look>
    Values Seen(bool corrected, std::string_view extension, Look look) {
        Values seen;
        job_.m_options.mode = corrected ? qnl::Mode::Corrected : qnl::Mode::Classic;
        qnl::mesh::NewDataStorage(job_);
        TheStage() = [&](FrozenLayerJob& job) {
            seen.push_back(static_cast<double>(look(job)));
            return 1;
        };
        const CapturedOutput noise;
        const std::string base = folder_.File(Name(0, extension));
        EXPECT_EQ(qnl::job::EvaluateOutputTimes(job_, base.c_str()), 1);
        return seen;
    }

    const std::array<NodeRecord, 2> nodes_{{{}, {0, 0, 0, 1, 0}}};
    const std::array<int, 5> corners_{0, 1, 1, 1, 1};
    const std::array<CellRecord, 2> cells_{{{}, {4, 0, corners_.data(), {0, 0, 0}, {1, 1, 1}, 0.5}}};
    const std::array<int, 2> ones_{0, 1};
    ScratchFolder folder_;
    FrozenLayerJob job_;
};

}  // namespace

TEST_F(CarriedState, TheLargestShrinkageIsThatOfItsTime) {
    WriteItem(Name(0, ".k4w"), qnl::StageKind::Warp, qnl::kWarpShrinkage, 2.0F);
    WriteItem(Name(1, ".k4w"), qnl::StageKind::Warp, qnl::kWarpShrinkage, 0.5F);
    job_.m_bHasWarp = 1;
    const auto largest = [](const FrozenLayerJob& job) { return job.m_dMaxValue; };
    EXPECT_EQ(Seen(true, ".k4w", largest), (Values{2.0, 0.5}));
    EXPECT_EQ(Seen(false, ".k4w", largest), (Values{2.0, 2.0})) << "classic keeps it";
}

TEST_F(CarriedState, FibreTensorsOfTheBaseTimeAreNotThoseOfALaterTime) {
    WriteFlowText(0, 1007, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0");
    WriteFlowText(1, 1007, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0");
    WriteItem(Name(0, ".k4o"), qnl::StageKind::Fibre, qnl::kFibreXX, 0.75F);
    job_.m_bHasFlow = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    const auto tensor = [](const FrozenLayerJob& job) { return job.m_pCellFiber[0][1]; };
    EXPECT_EQ(Seen(true, ".k4f", tensor), (Values{0.75, 0.0}));
    EXPECT_EQ(Seen(false, ".k4f", tensor), (Values{0.75, 0.75})) << "classic keeps them";
}

TEST_F(CarriedState, ATextWarpResultHasNoDisplacement) {
    WriteItem(Name(0, ".k4w"), qnl::StageKind::Warp, qnl::kWarpDisplacementX, 0.5F);
    folder_.Write(Name(1, ".k4w"), "[HEADER]\na\nb\nc\nd\ne\n1 0 0 14 0\n[RESULTS EOW]\n1 0 0 0 0 0 0 1\n");
    job_.m_bHasWarp = 1;
    const auto displacement = [](const FrozenLayerJob& job) {
        return job.m_pWarpDisplacement[0] ? job.m_pWarpDisplacement[0][1] : -1.0;
    };
    EXPECT_EQ(Seen(true, ".k4w", displacement), (Values{0.5, -1.0}));
    EXPECT_EQ(Seen(false, ".k4w", displacement), (Values{0.5, 0.5})) << "classic keeps it";
}

TEST_F(CarriedState, GasOfATextFlowResultEndsWithItsTime) {
    WriteFlowText(0, 1012, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0 0.5");
    WriteFlowText(1, 1007, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0");
    job_.m_bHasFlow = 1;
    const auto gas = [](const FrozenLayerJob& job) { return job.m_bIsGasIn; };
    EXPECT_EQ(Seen(true, ".k4f", gas), (Values{1, 0}));
    EXPECT_EQ(Seen(false, ".k4f", gas), (Values{1, 1})) << "classic keeps it";
}

TEST_F(CarriedState, GasOfACoolResultEndsWithItsTime) {
    WriteItem(Name(0, ".k4c"), qnl::StageKind::Cool, qnl::kCoolGas, -1.0F);
    folder_.Write(Name(1, ".k4c"), "[HEADER]\n1 1.0\na\nb\nc\nd\n1\n[PART VOLUME DATA]\na\nb\nc\n1 90 3 0\n");
    job_.m_bHasCool = 1;
    const auto gas = [](const FrozenLayerJob& job) { return job.m_bGasInCool; };
    EXPECT_EQ(Seen(true, ".k4c", gas), (Values{1, 0}));
    EXPECT_EQ(Seen(false, ".k4c", gas), (Values{1, 1})) << "classic keeps it";
}

TEST_F(CarriedState, CoolingTimeOfTheFillingEndsWithItsTime) {
    WriteItem(Name(0, ".k4f"), qnl::StageKind::Flow, qnl::kFlowCoolingTime, 4.0F);
    WriteItem(Name(1, ".k4f"), qnl::StageKind::Flow, qnl::kFlowTemperature, 200.0F);
    job_.m_bHasFlow = 1;
    const auto present = [](const FrozenLayerJob& job) { return job.m_bFillHasCoolingTime; };
    EXPECT_EQ(Seen(true, ".k4f", present), (Values{1, 0}));
    EXPECT_EQ(Seen(false, ".k4f", present), (Values{1, 1})) << "classic keeps it";
}

TEST_F(CarriedState, AThicknessThatCannotBeReadIsNotTheEarlierOne) {
    WriteFlowText(0, 1012, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0 0.5");
    WriteFlowText(1, 1012, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0 0.5");
    job_.m_bHasFlow = 1;
    const std::filesystem::path thickness(folder_.File("mesh.thk"));
    const auto lookAndRemove = [&](const FrozenLayerJob& job) {
        std::filesystem::remove(thickness);
        return job.m_pNodeThickness ? static_cast<double>(job.m_pNodeThickness[1]) : -1.0;
    };
    for (const bool corrected : {true, false}) {
        WriteItem("mesh.thk", qnl::StageKind::Thickness, qnl::kThicknessAlongRay, 3.0F);
        std::filesystem::last_write_time(
            thickness, std::filesystem::last_write_time(folder_.File("mesh.hdf")) + std::chrono::seconds(5));
        EXPECT_EQ(Seen(corrected, ".k4f", lookAndRemove), (Values{3.0, corrected ? -1.0 : 3.0}));
    }
}

TEST_F(CarriedState, AFailedStageGivesItsOwnStatusAndSavesNoSearch) {
    WriteFlowText(0, 1007, "1 0 0 200 0 0 1 1 1 0 0 0 0 0 0");
    qnl::mesh::NewDataStorage(job_);
    job_.m_bSearchDone = 0;
    job_.m_szSurFile.Set(folder_.File("mesh.sur"));
    TheStage() = [](FrozenLayerJob&) { return -1; };
    const CapturedOutput noise;
    EXPECT_EQ(qnl::job::EvaluateBaseTime(job_, folder_.File(Name(0, ".k4f")).c_str()), -4000);
    EXPECT_EQ(job_.m_bSearchDone, 0);
    EXPECT_FALSE(std::filesystem::exists(folder_.File("mesh.sur")));
}
