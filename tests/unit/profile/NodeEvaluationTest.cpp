#include "profile/NodeEvaluation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/StackJob.h"

namespace {

/// A wall of 3 mm: faces 1 and 2 at its ends, cells 1 to 3 between them; node 1 sees all, in the order of
/// ids. Freeze temperature 120 degC, t = 1 mm.
class Wall : public StackJob {
public:
    Wall() : StackJob(4, {0.0, 3.0}, {0.5, 1.5, 2.5}, 3.0) {
        Script(job).rays[1] = {1, 2, 3, 4, 5};
        Script(job).rays[2] = {1};
        job.m_dGeomTolerance = 1.0;
        job.m_dFreezeTemp = 120.0;
        job.m_dFreezeDensity = 1.0;
        SetField(0, {50.0, 60.0}, {100.0, 150.0, 100.0});
        SetField(1, {5.0, 1.0}, {1.0, 1.0, 1.0});
        SetField(2, {-1.0, -1.0}, {-1.0, 1.0, -1.0});
        SetField(3, {0.0, 0.0}, {1.0, 3.0, 1.0});
        SetField(4, {1.0, 9.0}, {2.0, 8.0, 3.0});
        SetField(5, {1.0, 1.0}, {0.9, 0.8, 0.9});
        for (const auto& component : job.m_pCellVector) {
            Fill<float>(component.get(), {0.5F, 1.5F, 0.0F});
        }
        Fill<double>(job.m_pCellFiber[2].get(), {0.75, 0.25, 0.125});
    }

    /// Melt, above 100 degC, from the middle of the first segment on.
    void MakeHot() { SetField(0, {50.0, 60.0}, {150.0, 150.0, 150.0}); }

    NodeProfileResult Evaluate(int node = 1) {
        NodeProfileResult result;
        status = CalcuFrozenAtNode(job, node, node, 0.0, 0.0, 0.0, 0.0, length, result, scratch);
        return result;
    }

    double length = 2.0;  ///< of the direction
    int status = 0;
    qnl::profile::ProfileScratch scratch;
};

void ExpectAllZero(const NodeProfileResult& result) {
    for (const double value : result.values) {
        EXPECT_EQ(value, 0.0);
    }
}

// Average of the samples less than 3 mm deep, by weights 0.25, 0.75, 1 and 0.75.

constexpr double kAverage = (0.25 * 50.0 + 0.75 * 100.0 + 150.0 + 0.75 * 100.0) / 2.75;

// Half of the first segment, with density 0.95, and two segments with 0.85; the last one ends at the window.
constexpr double kHotPackingIndex = (2.25 - (0.25 * 0.95 + 2.0 * 0.85)) / 3.0;

/// Flags of a stage, and whether its depth window changes on the way.
struct WindowCase {
    unsigned char warp;
    unsigned char cool;
    unsigned char gas;
    unsigned char fillTimes;
    double windowBefore;
    bool changes;
};

TEST(WindowChangesOnTheWay, OnlyWhereItIsReadBeforeItIsSet) {
    constexpr WindowCase cases[] = {
        {1, 1, 0, 0, 0.0, true},  {1, 0, 1, 0, 0.0, true},  {1, 0, 0, 1, 0.0, true},
        {1, 0, 0, 0, 0.0, false}, {0, 1, 0, 0, 0.0, false}, {0, 0, 1, 1, 0.0, false},
        {1, 1, 1, 1, 1.5, false}, {1, 1, 1, 1, 1.0, true},
    };
    for (const WindowCase& c : cases) {
        FrozenLayerJob job;
        job.m_dGeomTolerance = 0.5;
        job.m_bHasWarp = c.warp;
        job.m_bHasCool = c.cool;
        job.m_bIsGasIn = c.gas;
        job.m_bFillHasCoolingTime = c.fillTimes;
        job.m_dKernelScratch = c.windowBefore;
        EXPECT_EQ(qnl::profile::WindowChangesOnTheWay(job), c.changes) << &c - cases;
    }
}

}  // namespace

TEST(NodeEvaluation, PlainStageGivesRatioAndTemperatures) {
    Wall wall;
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(wall.status, 1);
    EXPECT_TRUE(result.hasProfile);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFrozenRatio], 60.0);
    EXPECT_EQ(result[qnl::kSlotMaxTemperature], 150.0);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotCenterTemperature], 137.5);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotAverageTemperature], kAverage);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotBulkTemperature], (0.75 * 100.0 + 3.0 * 150.0 + 0.75 * 100.0) / 4.5);
    for (int slot = qnl::kSlotSkinRatio; slot < qnl::kProfileSlots; ++slot) {
        EXPECT_EQ(result[static_cast<qnl::ProfileSlot>(slot)], 0.0) << "slot " << slot;
    }
    EXPECT_EQ(wall.job.m_dKernelScratch, 3.0);
}

TEST(NodeEvaluation, SearchesAlongTheUnitDirectionAndKeepsTheOrderFound) {
    Wall wall;
    Script(wall.job).rays[1] = {5, 1, 3, 2, 4};
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(Script(wall.job).lastDirection, (std::vector<double>{0.0, 0.0, 1.0}));
    const CSurfNodeSearch& record = wall.job.m_pNodeSearchResults[1];
    ASSERT_EQ(record.m_nPassElems, 5);
    EXPECT_EQ(std::vector<int>(record.m_pPassElems.get(), record.m_pPassElems.get() + 5),
              (std::vector<int>{5, 1, 3, 2, 4}));
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFrozenRatio], 60.0);
}

TEST(NodeEvaluation, DepthIsMeasuredToTheMiddleOfTheBoxInXAndYAndToTheRecordsOwnZ) {
    StackJob stack(1, {0.0, 0.0}, {}, 1.0);
    EntityRecord faces[3] = {};
    faces[1] = {0, 0, nullptr, {0.0, 2.0, 7.0}, {1.0, 4.0, 9.0}, -1.0};
    faces[2] = {0, 0, nullptr, {10.0, 2.0, 7.0}, {13.0, 4.0, 9.0}, -1.0};
    stack.job.p_Surfce = faces;
    stack.job.m_dGeomTolerance = 100.0;
    stack.job.m_bHasCool = 1;
    stack.job.m_dFreezeTemp = 1.0;
    stack.SetField(0, {0.0, 2.0}, {});
    Script(stack.job).rays[1] = {1, 2};
    qnl::profile::ProfileScratch scratch;
    NodeProfileResult result;
    ASSERT_EQ(CalcuFrozenAtNode(stack.job, 1, 1.0, 0.0, 0.0, 0.6, 0.0, 0.8, result, scratch), 1);
    const double* depths = scratch.Doubles(qnl::profile::ProfileScratch::kDepthRow);
    EXPECT_DOUBLE_EQ(depths[1], 0.6 * 0.5 - 0.8);
    EXPECT_DOUBLE_EQ(depths[2], 0.6 * 11.5 - 0.8);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFrozenRatio], 50.0);
}

TEST(NodeEvaluation, ADegenerateDirectionGivesZerosAndNoSearch) {
    Wall wall;
    wall.length = 0.9e-20;
    const NodeProfileResult result = wall.Evaluate();
    ExpectAllZero(result);
    EXPECT_EQ(wall.status, -1);
    EXPECT_FALSE(result.hasProfile);
    EXPECT_EQ(Script(wall.job).rayCalls, 0);
    EXPECT_EQ(wall.job.m_pNodeSearchResults[1].m_nPassElems, 0);
    EXPECT_EQ(wall.job.m_pNodeSearchResults[1].m_pPassElems, nullptr);
}

TEST(NodeEvaluation, FewerThanTwoPassElementsGiveZerosAndAreStored) {
    Wall wall;
    const NodeProfileResult result = wall.Evaluate(2);
    ExpectAllZero(result);
    EXPECT_EQ(wall.status, 1);
    EXPECT_FALSE(result.hasProfile);
    ASSERT_EQ(wall.job.m_pNodeSearchResults[2].m_nPassElems, 1);
    EXPECT_EQ(wall.job.m_pNodeSearchResults[2].m_pPassElems[0], 1);
    ExpectAllZero(wall.Evaluate(3));
    EXPECT_EQ(wall.job.m_pNodeSearchResults[3].m_nPassElems, 0);
    EXPECT_EQ(wall.job.m_dKernelScratch, 0.0) << "no kernel has run";
}

TEST(NodeEvaluation, ElementsAtOneDepthGiveTheirMeanTemperature) {
    StackJob stack(1, {2.0}, {2.0, 2.0}, 3.0);
    stack.job.m_dGeomTolerance = 1.0;
    stack.SetField(0, {10.0}, {20.0, 60.0});
    Script(stack.job).rays[1] = {1, 2, 3};
    qnl::profile::ProfileScratch scratch;
    NodeProfileResult result;
    CalcuFrozenAtNode(stack.job, 1, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, result, scratch);
    EXPECT_EQ(result[qnl::kSlotFrozenRatio], 100.0);
    EXPECT_EQ(result[qnl::kSlotMaxTemperature], 30.0);
    EXPECT_EQ(result[qnl::kSlotCenterTemperature], 30.0);
    EXPECT_EQ(result[qnl::kSlotAverageTemperature], 30.0);
    EXPECT_EQ(result[qnl::kSlotBulkTemperature], 30.0);
}

TEST(NodeEvaluation, AWarpRunWithoutASetterSeesNoWindow) {
    Wall wall;
    wall.job.m_bHasWarp = 1;
    wall.job.m_bHasFlow = 1;
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(result[qnl::kSlotFrozenRatio], 0.3) << "the shrinkage is largest at the wall";
    EXPECT_EQ(result[qnl::kSlotMaxTemperature], -100.0);
    EXPECT_EQ(result[qnl::kSlotCenterTemperature], 50.0) << "of the first sample";
    EXPECT_EQ(result[qnl::kSlotAverageTemperature], 0.0);
    EXPECT_EQ(result[qnl::kSlotBulkTemperature], 0.0);
    EXPECT_EQ(result[qnl::kSlotMaxVolumeShrinkage], -100.0);
    EXPECT_EQ(result[qnl::kSlotAverageVelocityU], 0.0);
    EXPECT_EQ(wall.job.m_dKernelScratch, 0.0);
}

TEST(NodeEvaluation, AWarpRunHasItsIndicatorAsTheRatioOnly) {
    Wall wall;
    wall.job.m_bHasWarp = 1;
    wall.job.m_bHasIntermediateTimes = 1;
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(result[qnl::kSlotFrozenRatio], 0.3);
    EXPECT_EQ(result[qnl::kSlotShrinkLocation], 0.0);
}

TEST(NodeEvaluation, AWarpRunIndicatesShrinkageInTheCoreByZero) {
    Wall wall;
    wall.job.m_bHasWarp = 1;
    wall.SetField(1, {1.0, 1.0}, {1.0, 1.0, 5.0});
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotFrozenRatio], 0.0);
}

TEST(NodeEvaluation, AWarpRunWithFillCoolingTimeSetsTheWindowForWhatFollows) {
    Wall wall;
    wall.job.m_bHasWarp = 1;
    wall.job.m_bHasFlow = 1;
    wall.job.m_bFillHasCoolingTime = 1;
    const NodeProfileResult first = wall.Evaluate();
    EXPECT_EQ(first[qnl::kSlotMaxTemperature], -100.0);
    EXPECT_EQ(first[qnl::kSlotMaxCoolingTime], 8.0);
    EXPECT_EQ(first[qnl::kSlotMaxVolumeShrinkage], 5.0) << "the flow quantities come after the cooling time";
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotMaxTemperature], 150.0);
}

TEST(NodeEvaluation, IntermediateTimesAddPackingAndSinkDepth) {
    Wall wall;
    wall.job.m_bHasIntermediateTimes = 1;
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(result[qnl::kSlotShrinkLocation], 0.3);
    EXPECT_EQ(result[qnl::kSlotPackingIndex], 0.0) << "cells at the melt limit and the segments above them";
    const auto linear = [](double x) { return 1.0 - std::pow(1.0 - x, 1.0 / 3.0); };
    EXPECT_DOUBLE_EQ(result[qnl::kSlotSinkDepth], linear(0.03) * 0.5 + linear(0.01) * 1.0);
    wall.MakeHot();
    EXPECT_NEAR(wall.Evaluate()[qnl::kSlotPackingIndex], kHotPackingIndex, 1e-15);
}

TEST(NodeEvaluation, GasRestrictsTheRatioAndGivesTheSkin) {
    Wall wall;
    wall.job.m_bIsGasIn = 1;
    wall.job.m_bHasIntermediateTimes = 1;
    const NodeProfileResult result = wall.Evaluate();
    // Markers by depth -1 -1 1 -1 -1: polymer 0.5 + 0.5 + 0.5 + 0.5, frozen 0.5 + 0.4 + 0.4 + 0.5.
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFrozenRatio], 90.0);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotSkinRatio], 200.0 / 3.0);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotSkinOrMoldDifference], 1.0);
    wall.MakeHot();
    // Up to the middle cell only: half of the first segment, with density 0.95, and the second.
    EXPECT_NEAR(wall.Evaluate()[qnl::kSlotPackingIndex], (1.25 - (0.25 * 0.95 + 0.85)) / 3.0, 1e-15);
}

TEST(NodeEvaluation, AnalysisTypeEightKeepsThePlainRatioAndPackingIndex) {
    Wall wall;
    wall.job.m_bIsGasIn = 1;
    wall.job.m_bHasIntermediateTimes = 1;
    wall.job.m_nAnalysisType = 8;
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFrozenRatio], 60.0);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotSkinRatio], 200.0 / 3.0);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotSkinOrMoldDifference], 1.0);
    wall.MakeHot();
    EXPECT_NEAR(wall.Evaluate()[qnl::kSlotPackingIndex], kHotPackingIndex, 1e-15);
}

TEST(NodeEvaluation, FillCoolingTimeIsTheLargestInTheWindow) {
    Wall wall;
    wall.job.m_bFillHasCoolingTime = 1;
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotMaxCoolingTime], 8.0) << "the far wall, at 3 mm, is outside";
}

TEST(NodeEvaluation, FlakesGiveTheColourIntensity) {
    Wall wall;
    wall.job.m_bIsFlakeLightIntensity = 1;
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFlakeIntensity], 0.75);
    EXPECT_DOUBLE_EQ(result[qnl::kSlotAverageTemperature], kAverage);
}

TEST(NodeEvaluation, AtLogLevelTwoFlakesShowAsTheAverageTemperature) {
    Wall wall;
    wall.job.m_bIsFlakeLightIntensity = 1;
    wall.job.m_nLogLevel = 1;
    EXPECT_DOUBLE_EQ(wall.Evaluate()[qnl::kSlotAverageTemperature], kAverage);
    wall.job.m_nLogLevel = 2;
    EXPECT_DOUBLE_EQ(wall.Evaluate()[qnl::kSlotAverageTemperature], 0.75);
}

TEST(NodeEvaluation, WithoutATensorFieldThereIsNoColourIntensity) {
    Wall wall;
    wall.job.m_bIsFlakeLightIntensity = 1;
    wall.job.m_pCellFiber[3].reset();
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotFlakeIntensity], 0.0);
}

TEST(NodeEvaluation, ACoolRunHasTheDifferenceOfTheWallsAndNoBulkTemperature) {
    Wall wall;
    wall.job.m_bHasCool = 1;
    wall.job.m_bIsGasIn = 1;
    wall.job.m_bIsFlakeLightIntensity = 1;
    NodeProfileResult result = wall.Evaluate();
    EXPECT_DOUBLE_EQ(result[qnl::kSlotFrozenRatio], 60.0);
    EXPECT_EQ(result[qnl::kSlotBulkTemperature], 0.0);
    EXPECT_EQ(result[qnl::kSlotSkinRatio], 0.0);
    EXPECT_EQ(result[qnl::kSlotSkinOrMoldDifference], 10.0);
    EXPECT_EQ(result[qnl::kSlotMaxCoolingTime], 8.0);
    EXPECT_EQ(result[qnl::kSlotFlakeIntensity], 0.0);
    wall.SetField(0, {90.0, 60.0}, {100.0, 150.0, 100.0});
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotSkinOrMoldDifference], 30.0) << "never negative";
}

TEST(NodeEvaluation, ACoolRunsPackingIndexDoesNotEndAtGas) {
    Wall wall;
    wall.job.m_bHasCool = 1;
    wall.job.m_bIsGasIn = 1;
    wall.job.m_bHasIntermediateTimes = 1;
    wall.MakeHot();
    EXPECT_NEAR(wall.Evaluate()[qnl::kSlotPackingIndex], kHotPackingIndex, 1e-15);
}

TEST(NodeEvaluation, ElementsCloserThanAShareOfTheHeightAreOneSample) {
    Wall wall;
    wall.job.m_dBoxMin[2] = -2e8;  // a height of 200 km, a share of 2 mm
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotMaxTemperature], (50.0 + 100.0 + 150.0 + 100.0 + 60.0) / 5.0);
}

TEST(NodeEvaluation, TwoSamplesHaveABulkTemperature) {
    Wall wall;
    Script(wall.job).rays[1] = {1, 2};
    wall.job.m_dGeomTolerance = 2.0;
    wall.SetField(qnl::kSpeed, {1.0, 3.0}, {});
    EXPECT_DOUBLE_EQ(wall.Evaluate()[qnl::kSlotBulkTemperature], (1.0 * 50.0 + 3.0 * 60.0) / 4.0);
}

TEST(NodeEvaluation, GasInACoolRunRestrictsTheRatio) {
    Wall wall;
    wall.job.m_bHasCool = 1;
    wall.job.m_bGasInCool = 1;
    EXPECT_DOUBLE_EQ(wall.Evaluate()[qnl::kSlotFrozenRatio], 90.0);
}

TEST(NodeEvaluation, TheRatioInPolymerSetsTheWindowItself) {
    Wall wall;
    wall.job.m_bHasWarp = 1;
    wall.job.m_bHasCool = 1;
    wall.job.m_bGasInCool = 1;
    EXPECT_DOUBLE_EQ(wall.Evaluate()[qnl::kSlotFrozenRatio], 90.0) << "nothing has set it before";
}

TEST(NodeEvaluation, FacesHaveNoVelocity) {
    Wall wall;
    wall.job.m_bHasFlow = 1;
    wall.job.m_dGeomTolerance = 2.0;
    wall.job.m_pCellVector[0][0] = 1000.0F;  // where a face would be looked for among the cells
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotAverageVelocityU], 1.0);
}

TEST(NodeEvaluation, TheFirstAndTheLastCellHaveVelocities) {
    Wall wall;
    wall.job.m_bHasFlow = 1;
    Script(wall.job).rays[1] = {3, 4, 5};
    Wall::Fill<float>(wall.job.m_pCellVector[0].get(), {0.5F, 1.5F, 4.0F});
    EXPECT_EQ(wall.Evaluate()[qnl::kSlotAverageVelocityU], 2.0);
}

TEST(NodeEvaluation, AMissingVelocityComponentIsZero) {
    Wall wall;
    wall.job.m_bHasFlow = 1;
    wall.job.m_pCellVector[1].reset();
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(result[qnl::kSlotAverageVelocityU], 1.0);
    EXPECT_EQ(result[qnl::kSlotAverageVelocityV], 0.0);
}

TEST(NodeEvaluation, FlowGivesShrinkageAndTheMeanVelocityOfMovingCells) {
    Wall wall;
    wall.job.m_bHasFlow = 1;
    Wall::Fill<float>(wall.job.m_pCellVector[1].get(), {0.1F, 0.0F, 0.0F});
    Wall::Fill<float>(wall.job.m_pCellVector[2].get(), {0.0F, 0.0F, 0.0F});
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_EQ(result[qnl::kSlotMaxVolumeShrinkage], 5.0);
    EXPECT_EQ(result[qnl::kSlotAverageVelocityU], 1.0);
    EXPECT_EQ(result[qnl::kSlotAverageVelocityV], static_cast<double>(0.1F));
    EXPECT_EQ(result[qnl::kSlotAverageVelocityW], 0.0);
}

TEST(NodeEvaluation, ShrinkageBeyondTheWholeIsTold) {
    Wall wall;
    wall.job.m_bHasIntermediateTimes = 1;
    EXPECT_FALSE(wall.Evaluate().shrinkageBeyondWhole);
    wall.SetField(qnl::kVolumeShrinkage, {250.0, 1.0}, {1.0, 1.0, 1.0});
    const NodeProfileResult result = wall.Evaluate();
    EXPECT_DOUBLE_EQ(result[qnl::kSlotSinkDepth], 0.5 + (1.0 - std::pow(0.99, 1.0 / 3.0)));
    EXPECT_TRUE(result.shrinkageBeyondWhole);
    EXPECT_FALSE(wall.Evaluate(2).shrinkageBeyondWhole) << "that of the node alone";
}

TEST(NodeEvaluation, LongProfilesGrowTheScratch) {
    std::vector<double> depths(3000);
    std::vector<double> temperatures(3000);
    std::vector<int> ids(3000);
    for (std::size_t k = 0; k < depths.size(); ++k) {
        depths[k] = static_cast<double>(k) * 0.001;
        temperatures[k] = k < 1500 ? 50.0 : 200.0;
        ids[k] = static_cast<int>(k) + 2;
    }
    StackJob stack(1, {10.0}, depths, 10.0);
    stack.job.m_dGeomTolerance = 10.0;
    stack.job.m_dFreezeTemp = 120.0;
    stack.SetField(0, {200.0}, temperatures);
    Script(stack.job).rays[1] = ids;
    qnl::profile::ProfileScratch scratch;
    NodeProfileResult result;
    CalcuFrozenAtNode(stack.job, 1, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, result, scratch);
    EXPECT_NEAR(result[qnl::kSlotFrozenRatio], 100.0 * (1.499 + 0.001 * 70.0 / 150.0) / 2.999, 1e-9);
}
