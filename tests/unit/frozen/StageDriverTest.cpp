#include "frozen/StageDriver.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"
#include "support/SetClock.h"
#include "support/StackJob.h"

namespace {

using qnl::RunStep;

/// Steps as they begin; each must end before the next.
class StepNotes : public qnl::RunObserver {
public:
    void StepBegins(RunStep step, const FrozenLayerJob& /*job*/) override { begun.push_back(step); }
    void StepEnds(RunStep step, const FrozenLayerJob& /*job*/) override {
        EXPECT_EQ(step, begun.back());
        ++ended;
    }

    std::vector<RunStep> begun;
    std::size_t ended = 0;
};

constexpr double kDepth = 0.5;  // of the cell below the near face, mm

EntityRecord AtX(double x) {
    EntityRecord record{};
    record.boxMin[0] = x - 1.0;
    record.boxMax[0] = x + 1.0;
    return record;
}

/// A part of four nodes, of which 1 to 3 are the corners of a face. The kernel knows a normal of node 1
/// alone; inwards, along -x, stand the face, a cell and another face, with a volume shrinkage of 5 %.
class StageDriver : public testing::Test {
protected:
    StageDriver() : stack_(4, {0.0, 0.0}, {0.0}, 1.0), job_(stack_.job) {
        faces_[1].nNode = 3;
        faces_[1].nodes = corners_.data();
        job_.p_Surfce = faces_.data();
        job_.p_Cell = cells_.data();
        job_.m_pNotRunnerNode = ones_.data();
        job_.m_pIsPartNodeTemp = ones_.data();
        job_.m_dGeomTolerance = 1.0;
        job_.m_dFreezeTemp = 120.0;
        stack_.SetField(qnl::kTemperature, {50.0, 60.0}, {100.0});
        stack_.SetField(qnl::kVolumeShrinkage, {5.0, 5.0}, {5.0});
        Script(job_).rays[1] = {1, 3, 2};
        job_.m_szResultFile.Set(folder_.File("part1.fzr"));
        job_.m_szLogFile.Set(folder_.Path() + "\\run.lgz");
        job_.m_options.observer = &notes_;
        g_bDriverFirstCall = true;
        fake::TheKernel().smoothings.clear();
        fake::TheKernel().smoothingEffect = nullptr;
    }
    ~StageDriver() override {
        fake::TheKernel().smoothingEffect = nullptr;
        fake::TheClock() = {};
    }

    std::string Run() {
        const CapturedOutput output;
        EXPECT_EQ(qnl::frozen::RunFrozenLayerStage(job_), 1);
        EXPECT_EQ(notes_.ended, notes_.begun.size());
        return output.Text();
    }

    /// The smoothing leaves a quarter of the reference of the sink marks, and all else as it is.
    void QuarterTheReference() {
        fake::TheKernel().smoothingEffect = [this](double* values) {
            if (values == job_.m_pSinkMarkWork.get()) {
                values[1] /= 4.0;
            }
        };
    }

    bool WritesSinkFile() const { return !folder_.Read("run_Sink.k4w").empty(); }

    const std::array<int, 4> corners_{0, 1, 2, 3};
    std::array<EntityRecord, 3> faces_{{{}, AtX(0.0), AtX(-2.0)}};
    const std::array<EntityRecord, 2> cells_{{{}, AtX(-kDepth)}};
    const std::vector<int> ones_ = std::vector<int>(41, 1);
    ScratchFolder folder_;
    StepNotes notes_;
    StackJob stack_;
    FrozenLayerJob& job_;
};

double LinearShrinkage(double volume) {
    return 1.0 - std::pow(1.0 - volume, 1.0 / 3.0);
}

}  // namespace

TEST_F(StageDriver, RunsAllStepsAndWritesTheResult) {
    Run();
    EXPECT_EQ(notes_.begun,
              (std::vector<RunStep>{RunStep::Normals, RunStep::Selection, RunStep::SearchRecords,
                                    RunStep::Evaluation, RunStep::SpecialNodes, RunStep::Thinning,
                                    RunStep::Smoothing, RunStep::SinkMarks, RunStep::ResultFile}));
    EXPECT_EQ(job_.m_nSurfaceNodes, 3);
    EXPECT_EQ(job_.m_pMaxTemperature[1], 100.0);
    EXPECT_EQ(folder_.FileCount(), 1U);
    EXPECT_FALSE(folder_.Read("part1.fzr").empty());
}

TEST_F(StageDriver, TheProbeFollowsThePreparation) {
    job_.m_bKernelFlag = 1;
    job_.m_szResultFile.Set(folder_.File("part1.csv"));
    folder_.Write("part1_IdForFiber.txt", "");
    Run();
    EXPECT_EQ(notes_.begun, (std::vector<RunStep>{RunStep::Normals, RunStep::Selection,
                                                  RunStep::SearchRecords, RunStep::FibreProbe}));
    EXPECT_EQ(job_.m_bSearchDone, -1);
}

TEST_F(StageDriver, TellsItsProgressInTheLog) {
    job_.m_nLogLevel = 1;
    job_.m_bHasWarp = 1;
    fake::TheClock().step = 0.25;
    const std::string text = Run();
    const char* const lines[] = {
        "NewFrozenCalcuMemory end\n",    "Calcu Frozen From SurfaceNodeAndNormal end\n",
        "Smooth SurfaceNodeValue end\n", "ComputeSinkMarkDisplacement\n",
        "Write Binary Result\n",         "OutputFrozenCalcuResults Time: 0.25 seconds\n"};
    std::size_t place = 0;
    for (const char* line : lines) {
        place = text.find(line, place);
        ASSERT_NE(place, std::string::npos) << line << text;
    }
}

TEST_F(StageDriver, TheFirstCallOfARunEmptiesTheArrays) {
    job_.m_pFrozenRatio[4] = 7.0;
    Run();
    EXPECT_FALSE(g_bDriverFirstCall);
    EXPECT_EQ(job_.m_pFrozenRatio[4], 0.0);

    job_.m_pFrozenRatio[4] = 7.0;
    job_.m_pBulkTemperature.reset();
    Run();
    EXPECT_EQ(job_.m_pFrozenRatio[4], 7.0);
    EXPECT_NE(job_.m_pBulkTemperature, nullptr) << "what a flag asks for later is made";
}

TEST_F(StageDriver, ClassicKeepsTheNormalsOfTheFirstCall) {
    Run();
    job_.m_pNormalX[1] = 5.0;
    Run();
    EXPECT_EQ(job_.m_pNormalX[1], 5.0);
    job_.m_options.mode = qnl::Mode::Corrected;
    Run();
    EXPECT_EQ(job_.m_pNormalX[1], 1.0);
}

TEST_F(StageDriver, NormalsAreSmoothedInRunsWithIntermediateTimes) {
    using Call = std::pair<const double*, int>;
    job_.m_bKernelFlag = 1;
    folder_.Write("part1_IdForFiber.txt", "");
    Run();
    EXPECT_TRUE(fake::TheKernel().smoothings.empty());
    job_.m_bHasIntermediateTimes = 1;
    Run();
    EXPECT_EQ(fake::TheKernel().smoothings,
              (std::vector<Call>{
                  {job_.m_pNormalX.get(), 6}, {job_.m_pNormalY.get(), 6}, {job_.m_pNormalZ.get(), 6}}));
    fake::TheKernel().smoothings.clear();
    job_.m_options.mode = qnl::Mode::Resolved;
    Run();
    EXPECT_TRUE(fake::TheKernel().smoothings.empty()) << "not in the resolved mode";
}

TEST_F(StageDriver, WithoutWarpageTheFrozenRatioStays) {
    job_.m_pSinkMarkTotal[1] = 3.0;
    job_.m_pSinkMarkWork[1] = 1.0;
    Run();
    EXPECT_EQ(job_.m_pFrozenRatio[1], 100.0);
    EXPECT_EQ(job_.m_pNormalX[1], 1.0);
    EXPECT_EQ(job_.m_pSinkMarkTotal[1], 3.0);
    EXPECT_FALSE(WritesSinkFile());
}

TEST_F(StageDriver, WarpageTurnsTheIndicatorIntoADisplacement) {
    job_.m_bHasWarp = 1;
    job_.m_pWarpDisplacement[0] = std::make_unique<double[]>(5);
    job_.m_pWarpDisplacement[0][1] = -0.125;
    job_.m_pSinkMarkTotal[1] = 3.0;
    Run();
    EXPECT_EQ(job_.m_pFrozenRatio[1], 0.125);
    EXPECT_EQ(job_.m_pNormalX[1], 1.0) << "sink vectors belong to intermediate times";
    EXPECT_EQ(job_.m_pSinkMarkTotal[1], 3.0);
}

TEST_F(StageDriver, IntermediateTimesGiveSinkVectorsAgainstTheReference) {
    job_.m_bHasIntermediateTimes = 1;
    job_.m_nLogLevel = 1;
    const double depth = LinearShrinkage(0.05) * kDepth;
    QuarterTheReference();
    Run();
    EXPECT_DOUBLE_EQ(job_.m_pSinkMarkTotal[1], depth - depth / 4.0);
    EXPECT_DOUBLE_EQ(job_.m_pNormalX[1], -(depth - depth / 4.0));
    EXPECT_TRUE(WritesSinkFile());
}

TEST_F(StageDriver, TheSinkFileIsWrittenForTheLogOnly) {
    job_.m_bHasIntermediateTimes = 1;
    QuarterTheReference();
    Run();
    EXPECT_LT(job_.m_pNormalX[1], 0.0);
    EXPECT_FALSE(WritesSinkFile());
    job_.m_nLogLevel = -1;
    Run();
    EXPECT_FALSE(WritesSinkFile());
}

TEST_F(StageDriver, FlowRunsThinOutTheirVelocities) {
    job_.m_bHasFlow = 1;
    job_.m_pSurfTree = std::make_unique<CQNLOptKer>();
    Run();
    EXPECT_EQ(job_.m_dSurAvgMeshSize, 2.0) << "of the face boxes";
}
