#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <vector>

#include "frozen/NodeSelection.h"
#include "frozen/ResultSmoothing.h"
#include "frozen/SearchRecords.h"
#include "frozen/SinkMarkDisplacement.h"
#include "frozen/SinkVectors.h"
#include "frozen/SpecialNodes.h"
#include "frozen/SurfaceNormals.h"
#include "frozen/VelocityThinning.h"
#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"
#include "support/ScriptedKernel.h"
#include "support/SetClock.h"

namespace {

qnl::OwnedArray<double> Doubles(const std::vector<double>& values) {
    auto array = std::make_unique<double[]>(values.size());
    std::copy(values.begin(), values.end(), array.get());
    return array;
}

/// Two triangles (4, 2, 3) and (3, 2, 1) over five nodes; node 5 lies on no face. Classes: nodes 1 and 2
/// part, 3 runner, 4 special, 5 part.
class FrozenStage : public ::testing::Test {
protected:
    FrozenStage() {
        job_.m_nNodes = 5;
        job_.m_nSurfaces = 2;
        job_.p_Node = nodes_.data();
        job_.p_Surfce = faces_.data();
        job_.m_pNotRunnerNode = classes_.data();
        job_.m_pSurfNodeFlag = std::make_unique<int[]>(6);
        job_.m_pCom = std::make_unique<CQNLCom>();
        job_.m_pNormalX = std::make_unique<double[]>(6);
        job_.m_pNormalY = std::make_unique<double[]>(6);
        job_.m_pNormalZ = std::make_unique<double[]>(6);
        fake::TheKernel().smoothings.clear();
        fake::TheKernel().smoothingEffect = nullptr;
    }

    std::vector<int> List() const {
        return {job_.m_pSurfNodeList.get() + 1, job_.m_pSurfNodeList.get() + 1 + job_.m_nSurfaceNodes};
    }

    void Place(int node, double x, double y, double z, double normalZ) {
        NodeRecord& record = nodes_[static_cast<std::size_t>(node)];
        record = {x, y, z, record.label, 0};
        job_.m_pNormalZ[node] = normalZ;
    }

    std::array<NodeRecord, 6> nodes_{
        {{}, {0, 0, 0, 1, 0}, {0, 0, 0, 2, 0}, {0, 0, 0, 3, 0}, {0, 0, 0, 4, 0}, {0, 0, 0, 5, 0}}};
    std::array<std::array<int, 4>, 2> corners_{{{0, 4, 2, 3}, {0, 3, 2, 1}}};
    std::array<SurfaceRecord, 3> faces_{{{},
                                         {3, 0, corners_[0].data(), {0, 0, 0}, {1, 0, 0}, 0},
                                         {3, 0, corners_[1].data(), {0, 0, 0}, {1, 0, 0}, 0}}};
    std::array<int, 6> classes_{0, 1, 1, 0, -1, 1};
    FrozenLayerJob job_;
};

}  // namespace

TEST_F(FrozenStage, SelectsCornersAtTheirFirstAppearance) {
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    qnl::frozen::SelectSurfaceNodes(job_);
    EXPECT_EQ(List(), (std::vector<int>{4, 2, 3, 1}));
    EXPECT_EQ(output.Text(), "nSurfaceNodes = 4 \n");
    EXPECT_EQ(std::vector<int>(job_.m_pSurfNodeFlag.get(), job_.m_pSurfNodeFlag.get() + 6),
              (std::vector<int>{0, 1, 1, 1, 1, 0}));
}

TEST_F(FrozenStage, ANodeOfNoKnownClassIsNotSelected) {
    classes_[3] = 2;
    qnl::frozen::SelectSurfaceNodes(job_);
    EXPECT_EQ(List(), (std::vector<int>{4, 2, 1}));
}

TEST_F(FrozenStage, StageOneSelectsPartNodesOnly) {
    job_.m_nStage = 1;
    qnl::frozen::SelectSurfaceNodes(job_);
    EXPECT_EQ(List(), (std::vector<int>{2, 1}));
}

TEST_F(FrozenStage, LaterCountsSeeTheOldMarksButTheListIsTheSame) {
    qnl::frozen::SelectSurfaceNodes(job_);
    const int* list = job_.m_pSurfNodeList.get();
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    qnl::frozen::SelectSurfaceNodes(job_);
    EXPECT_EQ(output.Text(), "nSurfaceNodes = 0 \n");
    EXPECT_EQ(job_.m_pSurfNodeList.get(), list);
    EXPECT_EQ(List(), (std::vector<int>{4, 2, 3, 1}));
}

TEST_F(FrozenStage, SpecialNodesLoseSinkPackingShrinkageAndFlake) {
    qnl::frozen::SelectSurfaceNodes(job_);
    job_.m_bHasIntermediateTimes = 1;
    job_.m_bHasFlow = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    for (qnl::OwnedArray<double>* array :
         {&job_.m_pSinkMarkWork, &job_.m_pSinkMarkTotal, &job_.m_pPackingIndex, &job_.m_pMaxVolumeShrinkage,
          &job_.m_pFlakeColorIntensity, &job_.m_pFrozenRatio}) {
        *array = Doubles({0, 1, 2, 3, 4, 5});
    }
    qnl::frozen::ClearSpecialNodes(job_);
    for (const qnl::OwnedArray<double>* array :
         {&job_.m_pSinkMarkWork, &job_.m_pSinkMarkTotal, &job_.m_pPackingIndex, &job_.m_pMaxVolumeShrinkage,
          &job_.m_pFlakeColorIntensity}) {
        EXPECT_EQ((*array)[4], 0.0);
        EXPECT_EQ((*array)[3], 3.0) << "a plain runner node keeps its value";
    }
    EXPECT_EQ(job_.m_pFrozenRatio[4], 4.0);
}

TEST_F(FrozenStage, TheLastListedNodeMayBeSpecial) {
    classes_[1] = -1;
    qnl::frozen::SelectSurfaceNodes(job_);
    job_.m_bHasFlow = 1;
    job_.m_pMaxVolumeShrinkage = Doubles({0, 1, 2, 3, 4, 5});
    qnl::frozen::ClearSpecialNodes(job_);
    EXPECT_EQ(job_.m_pMaxVolumeShrinkage[1], 0.0);
}

TEST_F(FrozenStage, SpecialNodesKeepWhatTheRunDoesNotHave) {
    qnl::frozen::SelectSurfaceNodes(job_);
    job_.m_pMaxVolumeShrinkage = Doubles({0, 1, 2, 3, 4, 5});
    qnl::frozen::ClearSpecialNodes(job_);
    EXPECT_EQ(job_.m_pMaxVolumeShrinkage[4], 4.0);
}

TEST(ThinningDistance, IsThreeFaceSizesButAtMostThreePercentOfTheBox) {
    EXPECT_EQ(qnl::frozen::ThinningDistance(0.5, 100.0), 1.5);
    EXPECT_EQ(qnl::frozen::ThinningDistance(1.0, 100.0), 3.0)
        << "a face size of exactly one percent is not above it";
    EXPECT_EQ(qnl::frozen::ThinningDistance(2.0, 100.0), 3.0);
    EXPECT_EQ(qnl::frozen::ThinningDistance(0.95, 100.0), 3.0 * 0.95);
    ASSERT_NE(3.0 * 0.07, 7.0 * 3.0 / 100.0) << "they differ in the last bit";
    EXPECT_EQ(qnl::frozen::ThinningDistance(0.07, 7.0), 3.0 * 0.07);
}

class Thinning : public FrozenStage {
protected:
    Thinning() {
        job_.m_bHasFlow = 1;
        job_.m_pSurfTree = std::make_unique<CQNLOptKer>();
        job_.m_dBoxMax[0] = 1000.0;
        for (qnl::OwnedArray<double>* array :
             {&job_.m_pAverageVelocityU, &job_.m_pAverageVelocityV, &job_.m_pAverageVelocityW}) {
            *array = Doubles({0, 1, 2, 3, 4, 5});
        }
        qnl::frozen::SelectSurfaceNodes(job_);
        Place(4, 500, 0, 0, 1);
        Place(1, -500, 0, 0, 1);
    }
};

TEST_F(Thinning, SecondOfTwoNodesOnTheSameWallLosesItsVelocity) {
    Place(2, 0, 0, 0, 1);
    Place(3, 1.5, 0, 0, 1);  // the thinning distance is 3 mean face boxes of 1 mm
    qnl::frozen::ThinOutVelocities(job_);
    EXPECT_EQ(job_.m_dSurAvgMeshSize, 1.0);
    EXPECT_EQ(job_.m_pAverageVelocityU[2], 2.0);
    EXPECT_EQ(job_.m_pAverageVelocityU[3], 0.0);
    EXPECT_EQ(job_.m_pAverageVelocityV[3], 0.0);
    EXPECT_EQ(job_.m_pAverageVelocityW[3], 0.0);
    EXPECT_EQ(job_.m_pAverageVelocityU[1], 1.0);
}

TEST_F(Thinning, NodesOnOppositeWallsBothKeepTheirs) {
    Place(2, 0, 0, 0, 1);
    Place(3, 0, 0, 1.5, -1);
    qnl::frozen::ThinOutVelocities(job_);
    EXPECT_EQ(job_.m_pAverageVelocityU[2], 2.0);
    EXPECT_EQ(job_.m_pAverageVelocityU[3], 3.0);
}

TEST_F(Thinning, PerpendicularNormalsCountAsTheSameWall) {
    Place(2, 0, 0, 0, 1);
    Place(3, 0, 0, 1.5, 0);
    job_.m_pNormalX[3] = 1.0;
    qnl::frozen::ThinOutVelocities(job_);
    EXPECT_EQ(job_.m_pAverageVelocityU[3], 0.0);
}

TEST_F(Thinning, TheTreeLivesOnSoALaterTimeKeepsNoVelocity) {
    Place(2, 0, 0, 0, 1);
    Place(3, 100, 0, 0, 1);
    qnl::frozen::ThinOutVelocities(job_);
    job_.m_pAverageVelocityU = Doubles({0, 1, 2, 3, 4, 5});
    qnl::frozen::ThinOutVelocities(job_);
    for (int node = 1; node <= 4; ++node) {
        EXPECT_EQ(job_.m_pAverageVelocityU[static_cast<std::size_t>(node)], 0.0) << node;
    }
}

TEST_F(Thinning, TheLongestSideOfTheBoxCountsAlongEveryAxis) {
    Place(2, 0, 0, 0, 1);
    Place(3, 1.5, 0, 0, 1);  // near by 3 mean face boxes, far by 3 % of the short sides
    for (const std::size_t place : {0U, 1U, 2U, 3U, 4U, 5U}) {
        const std::size_t axis = place % 3;
        const bool below = place < 3;  // the box reaches to 0 from below, or from 0 upwards
        std::fill(std::begin(job_.m_dBoxMax), std::end(job_.m_dBoxMax), below ? 0.0 : 1.0);
        std::fill(std::begin(job_.m_dBoxMin), std::end(job_.m_dBoxMin), below ? -1.0 : 0.0);
        (below ? job_.m_dBoxMin : job_.m_dBoxMax)[axis] = below ? -1000.0 : 1000.0;
        job_.m_pSurfTree = std::make_unique<CQNLOptKer>();
        job_.m_pAverageVelocityU = Doubles({0, 1, 2, 3, 4, 5});
        qnl::frozen::ThinOutVelocities(job_);
        EXPECT_EQ(job_.m_pAverageVelocityU[2], 2.0) << axis;
        EXPECT_EQ(job_.m_pAverageVelocityU[3], 0.0) << axis;
    }
}

TEST_F(Thinning, KeptNodesAreBoxesOfATenThousandthAround) {
    Place(2, 0, 0, 0, 1);
    const auto keeps = [this](double x, double y, double z, double distance) {
        Place(3, x * distance, y * distance, z * distance, 1);
        job_.m_pSurfTree = std::make_unique<CQNLOptKer>();
        job_.m_pAverageVelocityU = Doubles({0, 1, 2, 3, 4, 5});
        qnl::frozen::ThinOutVelocities(job_);
        return job_.m_pAverageVelocityU[3] == 3.0;
    };
    for (const double side : {-1.0, 1.0}) {
        for (const auto& [x, y, z] : {std::array{side, 0.0, 0.0}, {0.0, side, 0.0}, {0.0, 0.0, side}}) {
            EXPECT_FALSE(keeps(x, y, z, 3.00005)) << "beyond the distance, but not beyond the box";
            EXPECT_TRUE(keeps(x, y, z, 3.000105));
        }
    }
}

TEST_F(Thinning, NormalsThatAreOppositeByLessThanTheLimitCountAsTheSameWall) {
    Place(2, 0, 0, 0, 1);
    const auto keeps = [this](double normalZ) {
        Place(3, 0, 0, 1.5, normalZ);
        job_.m_pSurfTree = std::make_unique<CQNLOptKer>();
        job_.m_pAverageVelocityU = Doubles({0, 1, 2, 3, 4, 5});
        qnl::frozen::ThinOutVelocities(job_);
        return job_.m_pAverageVelocityU[3] == 3.0;
    };
    EXPECT_FALSE(keeps(-0.95e-30));
    EXPECT_TRUE(keeps(-1e-30)) << "the limit itself";
    EXPECT_TRUE(keeps(-1.05e-30));
}

TEST_F(Thinning, WithoutFlowNothingHappens) {
    job_.m_bHasFlow = 0;
    qnl::frozen::ThinOutVelocities(job_);
    EXPECT_EQ(job_.m_dSurAvgMeshSize, 0.001);
}

TEST_F(FrozenStage, SmoothingFollowsItsTable) {
    job_.m_bHasIntermediateTimes = 1;
    job_.m_bHasFlow = 1;
    job_.m_bIsGasIn = 1;
    job_.m_bFillHasCoolingTime = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    std::vector<qnl::OwnedArray<double>*> expected{
        &job_.m_pFrozenRatio,        &job_.m_pMaxTemperature,  &job_.m_pCenterTemperature,
        &job_.m_pAverageTemperature, &job_.m_pBulkTemperature, &job_.m_pSkinRatio,
        &job_.m_pSkinThickness,      &job_.m_pMaxCoolingTime,  &job_.m_pFlakeColorIntensity,
        &job_.m_pSinkMarkWork,       &job_.m_pSinkMarkTotal,   &job_.m_pPackingIndex,
        &job_.m_pMaxVolumeShrinkage};
    for (qnl::OwnedArray<double>* array : expected) {
        *array = std::make_unique<double[]>(6);
    }
    qnl::frozen::SmoothResults(job_);
    ASSERT_EQ(fake::TheKernel().smoothings.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(fake::TheKernel().smoothings[i].first, expected[i]->get()) << i;
        EXPECT_EQ(fake::TheKernel().smoothings[i].second, expected[i] == &job_.m_pSinkMarkWork ? 200 : 2)
            << i;
    }
}

TEST_F(FrozenStage, CoolingSmoothsTheMouldDifferenceAndTheCoolingTime) {
    job_.m_bHasCool = 1;
    job_.m_bFillHasCoolingTime = 1;
    job_.m_pMoldTemperatureDiff = std::make_unique<double[]>(6);
    job_.m_pMaxCoolingTime = std::make_unique<double[]>(6);
    qnl::frozen::SmoothResults(job_);
    ASSERT_EQ(fake::TheKernel().smoothings.size(), 6U);
    EXPECT_EQ(fake::TheKernel().smoothings[4].first, job_.m_pMoldTemperatureDiff.get());
    EXPECT_EQ(fake::TheKernel().smoothings[5].first, job_.m_pMaxCoolingTime.get());
}

TEST_F(FrozenStage, TheResolvedModeSmoothsTheSinkMarkReferenceAlone) {
    job_.m_options.mode = qnl::Mode::Resolved;
    job_.m_bHasIntermediateTimes = 1;
    job_.m_pSinkMarkWork = std::make_unique<double[]>(6);
    qnl::frozen::SmoothResults(job_);
    using Call = std::pair<const double*, int>;
    EXPECT_EQ(fake::TheKernel().smoothings, std::vector<Call>{Call(job_.m_pSinkMarkWork.get(), 200)});
}

TEST_F(FrozenStage, NormalsAreZeroedBeforeTheKernelFillsThem) {
    job_.m_pNormalX.reset();
    job_.m_pNormalY[3] = 9.0;
    EXPECT_EQ(qnl::frozen::ComputeSurfaceNormals(job_), 1);
    EXPECT_EQ(job_.m_pNormalX[1], 1.0);
    EXPECT_EQ(job_.m_pNormalX[5], 0.0) << "a node on no face keeps a zero normal";
    EXPECT_EQ(job_.m_pNormalY[3], 0.0);
}

TEST_F(FrozenStage, NegativeSinkTotalsAreClippedAndGiveNoVector) {
    job_.m_pSinkMarkTotal = Doubles({0, 1.0, 0.25, 0, 0, 1.5});
    job_.m_pSinkMarkWork = Doubles({0, 0.25, 1.0, 0, 0, 0.5});
    job_.m_pNormalX[1] = 3.0;
    job_.m_pNormalY[1] = 4.0;
    job_.m_pNormalX[2] = 1.0;
    qnl::frozen::SubtractSinkReference(job_);
    EXPECT_EQ(job_.m_pSinkMarkTotal[1], 0.75);
    EXPECT_EQ(job_.m_pSinkMarkTotal[2], 0.0);
    qnl::frozen::TurnNormalsIntoSinkVectors(job_);
    EXPECT_EQ(job_.m_pNormalX[1], -0.75 * (3.0 / 5.0));
    EXPECT_EQ(job_.m_pNormalY[1], -0.75 * (4.0 / 5.0));
    EXPECT_EQ(job_.m_pNormalX[2], 0.0);
    EXPECT_EQ(job_.m_pSinkMarkTotal[5], 1.0);
    EXPECT_EQ(job_.m_pNormalZ[5], 0.0) << "a zero normal stays finite";
}

TEST_F(FrozenStage, SinkVectorsPointInwards) {
    job_.m_pSinkMarkTotal = Doubles({0, -1.0, 0, 0, 2.0, 7.0});
    job_.m_pNormalZ[1] = 1.0;
    job_.m_pNormalZ[4] = 1e-31;
    for (qnl::OwnedArray<double>* normal : {&job_.m_pNormalX, &job_.m_pNormalY, &job_.m_pNormalZ}) {
        (*normal)[5] = normal == &job_.m_pNormalX ? 4.0 : normal == &job_.m_pNormalY ? 6.0 : 12.0;
    }
    qnl::frozen::TurnNormalsIntoSinkVectors(job_);
    EXPECT_EQ(job_.m_pNormalX[5], -7.0 * (4.0 / 14.0));
    EXPECT_EQ(job_.m_pNormalY[5], -7.0 * (6.0 / 14.0));
    EXPECT_EQ(job_.m_pNormalZ[5], -7.0 * (12.0 / 14.0));
    EXPECT_EQ(job_.m_pNormalZ[1], 0.0) << "a negative depth is none";
    EXPECT_DOUBLE_EQ(job_.m_pNormalZ[4], -0.2) << "a normal next to nothing is taken as 1e-30 long";
}

class WarpSink : public FrozenStage {
protected:
    WarpSink() {
        job_.m_nWarpEntries = 5;
        for (qnl::OwnedArray<double>& axis : job_.m_pWarpDisplacement) {
            axis = std::make_unique<double[]>(6);
        }
        for (int node = 1; node <= 4; ++node) {
            job_.m_pNormalZ[static_cast<std::size_t>(node)] = 2.0;
            job_.m_pWarpDisplacement[2][static_cast<std::size_t>(node)] = 0.1 * node;
        }
    }
};

TEST_F(WarpSink, FixedNodesEndWithZeroAndFreeOnesWithTheirOwnLessTheReference) {
    std::vector<double> ratio{7, 0.1, 0.3, 0.0, 0.11, 9};
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_EQ(ratio[1], 0.0) << "exactly 0.1 is fixed";
    EXPECT_EQ(ratio[3], 0.0);
    EXPECT_EQ(ratio[2], (-2.0 / (2.0 + 1e-20)) * 0.2)
        << "smoothing that changes nothing leaves a reference of 0";
    EXPECT_EQ(ratio[4], (-2.0 / (2.0 + 1e-20)) * 0.4);
    EXPECT_EQ(ratio[5], 0.0) << "a node on no face";
    EXPECT_EQ(ratio[0], 0.0);
}

TEST_F(WarpSink, SmoothsTwoHundredTimesByTwoSweeps) {
    std::vector<double> ratio(6, 0.3);
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    ASSERT_EQ(fake::TheKernel().smoothings.size(), 200U);
    for (const auto& call : fake::TheKernel().smoothings) {
        EXPECT_EQ(call.second, 2);
    }
}

TEST_F(WarpSink, FixedNodesAreFixedAgainAfterEveryRound) {
    std::vector<double> ratio{0, 0.1, 0.3, 0.0, 0.3, 0};
    fake::TheKernel().smoothingEffect = [](double* reference) {
        reference[2] = reference[1];
        reference[1] = 7.0;
    };
    const double own1 = (-2.0 / (2.0 + 1e-20)) * 0.1;
    const double own2 = (-2.0 / (2.0 + 1e-20)) * 0.2;
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_EQ(ratio[2], own2 - own1) << "the free node sees the fixed one where it was";
    EXPECT_EQ(ratio[1], 0.0);
}

TEST_F(WarpSink, AllNodesFixedGiveZeroEverywhere) {
    std::vector<double> ratio(6, 0.1);
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_EQ(ratio, std::vector<double>(6, 0.0));
}

TEST_F(WarpSink, DisplacementIsTakenAlongTheInwardNormal) {
    std::vector<double> ratio(6, 0.3);
    job_.m_pNormalX[2] = 2.0;
    job_.m_pNormalY[2] = 3.0;
    job_.m_pNormalZ[2] = 6.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        job_.m_pWarpDisplacement[axis][2] = 7.0 * static_cast<double>(axis + 1);
    }
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_DOUBLE_EQ(ratio[2], -(2.0 * 1.0 + 3.0 * 2.0 + 6.0 * 3.0));

    std::fill(ratio.begin(), ratio.end(), 0.3);
    job_.m_pWarpDisplacement[1].reset();
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_DOUBLE_EQ(ratio[2], -(2.0 * 1.0 + 6.0 * 3.0)) << "an absent component is 0";
}

TEST_F(WarpSink, ANormalNextToNothingIsHeldAgainstAGuardOfItsSize) {
    std::vector<double> ratio(6, 0.3);
    job_.m_pNormalZ[2] = 1e-20;
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_DOUBLE_EQ(ratio[2], -0.5 * 0.2);
}

TEST_F(WarpSink, TheReferenceSpreadsFromTheFixedNodesFromTheFirstRoundOn) {
    std::vector<double> ratio{0, 0.1, 0.3, 0.3, 0.3, 0};
    std::vector<double> first;
    fake::TheKernel().smoothingEffect = [&first](double* reference) {
        if (first.empty()) {
            first.assign(reference, reference + 6);
        }
    };
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    fake::TheKernel().smoothingEffect = nullptr;
    EXPECT_EQ(first, (std::vector<double>{0.0, (-2.0 / (2.0 + 1e-20)) * 0.1, 0.0, 0.0, 0.0, 0.0}));
}

TEST_F(WarpSink, AZeroNormalAndAbsentDisplacementsGiveZero) {
    std::vector<double> ratio(6, 0.3);
    job_.m_pNormalZ[2] = 0.0;
    job_.m_pWarpDisplacement[1].reset();
    qnl::frozen::ComputeSinkMarkDisplacement(job_, ratio.data());
    EXPECT_EQ(ratio[2], 0.0);
    EXPECT_TRUE(std::isfinite(ratio[1]));
    EXPECT_NE(ratio[1], 0.0);
}

class SearchRecords : public FrozenStage {
protected:
    SearchRecords() {
        qnl::frozen::SelectSurfaceNodes(job_);
        job_.m_szMeshFile.Set(folder_.Write("m.hdf", "mesh"));
        job_.m_szSurFile.Set(folder_.Path() + "\\m.sur");
        job_.m_options.mode = qnl::Mode::Corrected;
    }

    /// Four lists, the first of one face.
    void WriteSearchFile(const std::string& name) {
        const std::array<int, 7> words{1001, 4, 1, 2, 0, 0, 0};
        folder_.Write(name, std::string(reinterpret_cast<const char*>(words.data()), sizeof words));
    }

    void SetAge(const std::string& name, int secondsLaterThanMesh) {
        const std::filesystem::path folder(folder_.Path());
        std::filesystem::last_write_time(folder / name, std::filesystem::last_write_time(folder / "m.hdf") +
                                                            std::chrono::seconds(secondsLaterThanMesh));
    }

    ScratchFolder folder_;
};

TEST_F(SearchRecords, AFileAsOldAsItsMeshIsTaken) {
    WriteSearchFile("m.sur");
    SetAge("m.sur", 0);
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_bSearchDone, 1);
    ASSERT_NE(job_.m_pNodeSearchResults, nullptr);
    ASSERT_EQ(job_.m_pNodeSearchResults[1].m_nPassElems, 1);
    EXPECT_EQ(job_.m_pNodeSearchResults[1].m_pPassElems[0], 2);
}

TEST_F(SearchRecords, WithoutASearchToReadNothingIsMade) {
    job_.m_bSearchDone = 0;
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_pNodeSearchResults, nullptr);
    EXPECT_EQ(output.Text(), "");
}

TEST_F(SearchRecords, AFileOlderThanItsMeshIsNotBelievedInCorrectedMode) {
    WriteSearchFile("m.sur");
    SetAge("m.sur", -10);
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_bSearchDone, 0);
}

TEST_F(SearchRecords, ClassicTrustsAnOldFile) {
    job_.m_options.mode = qnl::Mode::Classic;
    WriteSearchFile("m.sur");
    SetAge("m.sur", -10);
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_bSearchDone, 1);
}

TEST_F(SearchRecords, SmoothedNormalsHaveAFileOfTheirOwnInCorrectedMode) {
    job_.m_bHasIntermediateTimes = 1;
    WriteSearchFile("m_s.sur");
    SetAge("m_s.sur", 1);
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_bSearchDone, 1);
    EXPECT_EQ(job_.m_szSurFile.View(), folder_.Path() + "/m_s.sur");
}

TEST_F(SearchRecords, OtherModesHaveOneFileForAllNormals) {
    for (const qnl::Mode mode : {qnl::Mode::Classic, qnl::Mode::Resolved}) {
        job_.m_options.mode = mode;
        job_.m_bHasIntermediateTimes = 1;
        job_.m_pNodeSearchResults.reset();
        WriteSearchFile("m.sur");
        SetAge("m.sur", 1);
        qnl::frozen::PrepareSearchRecords(job_);
        EXPECT_EQ(job_.m_bSearchDone, 1);
    }
}

TEST_F(SearchRecords, WithoutIntermediateTimesNoNormalsAreSmoothed) {
    WriteSearchFile("m.sur");
    SetAge("m.sur", 1);
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_szSurFile.View(), folder_.Path() + "\\m.sur");
}

TEST_F(SearchRecords, TellsHowLongTheReadingTook) {
    job_.m_nLogLevel = 1;
    fake::TheClock() = {100.0, 0.25};
    const CapturedOutput output;
    qnl::frozen::PrepareSearchRecords(job_);
    fake::TheClock() = {};
    EXPECT_NE(output.Text().find("ReadSearchResult Time: 0.25 seconds\n"), std::string::npos)
        << output.Text();
}

TEST_F(SearchRecords, AreMadeOnceAndReportedEveryTime) {
    WriteSearchFile("m.sur");
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    qnl::frozen::PrepareSearchRecords(job_);
    const CSurfNodeSearch* records = job_.m_pNodeSearchResults.get();
    const std::string first = output.Text();
    EXPECT_EQ(first.find("new CSurfNodeSearch\n"), 0U);
    EXPECT_NE(first.find("ReadSearchResult Time: "), std::string::npos);
    qnl::frozen::PrepareSearchRecords(job_);
    EXPECT_EQ(job_.m_pNodeSearchResults.get(), records);
    EXPECT_EQ(output.Text().find("new CSurfNodeSearch", first.size()), std::string::npos);
    EXPECT_NE(output.Text().find("ReadSearchResult Time: ", first.size()), std::string::npos);
}
