#include "output/OutputItems.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "context/OutputQuantities.h"
#include "support/CapturedOutput.h"

namespace {

/// Two nodes; every array an item may come from exists and holds zeros.
class OutputItems : public ::testing::Test {
protected:
    OutputItems() {
        job_.m_nNodes = 2;
        for (const qnl::OutputQuantity& quantity : qnl::kOutputQuantities) {
            job_.*quantity.array = std::make_unique<double[]>(3);
        }
    }

    std::set<int> Written() {
        EXPECT_EQ(qnl::output::SetOutputItemInformation(job_), 1);
        std::set<int> ids;
        for (int i = 0; i < job_.m_nItemCount; ++i) {
            if (job_.m_pOutputItems[static_cast<std::size_t>(i)].bOutput == 1) {
                ids.insert(job_.m_pOutputItems[static_cast<std::size_t>(i)].nItemID);
            }
        }
        EXPECT_EQ(job_.m_nOutputItemCount, static_cast<int>(ids.size()));
        return ids;
    }

    const qnl::OutputItem& Item(int id) const {
        return job_.m_pOutputItems[static_cast<std::size_t>(id - 1)];
    }

    FrozenLayerJob job_;
};

}  // namespace

TEST_F(OutputItems, WithoutAnyStageTheFirstFiveAreWritten) {
    EXPECT_EQ(Written(), (std::set<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(job_.m_nItemCount, 20);
}

TEST_F(OutputItems, FlowAddsShrinkageAndVelocity) {
    job_.m_bHasFlow = 1;
    job_.m_pMaxVolumeShrinkage[2] = 3.0;
    EXPECT_EQ(Written(), (std::set<int>{1, 2, 3, 4, 5, 16, 17, 18, 19}));
}

TEST_F(OutputItems, ShrinkageThatIsZeroEverywhereIsDropped) {
    job_.m_bHasFlow = 1;
    job_.m_pMaxVolumeShrinkage[2] = 0.9e-6;
    EXPECT_EQ(Written(), (std::set<int>{1, 2, 3, 4, 5, 17, 18, 19}));
}

TEST_F(OutputItems, ShrinkageOfAMillionthIsKept) {
    job_.m_bHasFlow = 1;
    job_.m_pMaxVolumeShrinkage[2] = 1e-6;
    EXPECT_EQ(Written().count(16), 1U);
    job_.m_pMaxVolumeShrinkage[2] = 0.0;
    EXPECT_EQ(Written().count(16), 1U) << "the running maximum stays";
}

TEST_F(OutputItems, ShrinkageBelowZeroIsKept) {
    job_.m_bHasFlow = 1;
    job_.m_pMaxVolumeShrinkage[2] = -1e-6;
    EXPECT_EQ(Written().count(16), 1U);
    job_.m_pMaxVolumeShrinkage[2] = -3.0;
    EXPECT_EQ(Written().count(16), 1U);
}

TEST_F(OutputItems, GasFillCoolingFlakeAndIntermediateTimesAddTheirs) {
    job_.m_bIsGasIn = 1;
    job_.m_bFillHasCoolingTime = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    job_.m_bHasIntermediateTimes = 1;
    EXPECT_EQ(Written(), (std::set<int>{1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 13, 14, 15, 20}));
}

TEST_F(OutputItems, CoolingWritesSixWhateverTheOtherFlags) {
    job_.m_bHasCool = 1;
    job_.m_bIsGasIn = 1;
    job_.m_bHasFlow = 1;
    job_.m_bFillHasCoolingTime = 1;
    job_.m_bIsFlakeLightIntensity = 1;
    job_.m_bHasIntermediateTimes = 1;
    EXPECT_EQ(Written(), (std::set<int>{1, 2, 3, 4, 7, 8}));
}

TEST_F(OutputItems, NamesAndUnitsAreTheImposedOnes) {
    Written();
    EXPECT_STREQ(Item(12).szName, "SinkMarkDisplacement_Totoal");
    EXPECT_STREQ(Item(8).szUnit, "oC");
    EXPECT_STREQ(Item(10).szName, "Fill_MaxCoolingTime");
    EXPECT_STREQ(Item(10).szUnit, "oC");
    EXPECT_STREQ(Item(19).szUnit, "cm/s");
    for (int id = 1; id <= 20; ++id) {
        EXPECT_EQ(Item(id).nItemID, id);
        EXPECT_EQ(Item(id).nDataType, 1);
    }
}

TEST_F(OutputItems, LimitsStartAtAThousandAndRunOverAllTimes) {
    job_.m_pFrozenRatio[1] = 20.0;
    job_.m_pFrozenRatio[2] = 40.0;
    Written();
    EXPECT_EQ(Item(1).dMax, 40.0);
    EXPECT_EQ(Item(1).dMin, 20.0);
    job_.m_pFrozenRatio[1] = 30.0;
    job_.m_pFrozenRatio[2] = 30.0;
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    Written();
    EXPECT_EQ(Item(1).dMax, 40.0);
    EXPECT_EQ(Item(1).dMin, 20.0);
    EXPECT_EQ(output.Text().find("Item = 0, Max=40, Min=20 \n"), 0U);
    EXPECT_NE(output.Text().find("SetOutputItermInfor end"), std::string::npos);
}

TEST_F(OutputItems, ValuesBeyondTheStartLimitsOnlyMoveOneOfThem) {
    job_.m_pMaxTemperature[1] = 2000.0;
    job_.m_pMaxTemperature[2] = 1500.0;
    Written();
    EXPECT_EQ(Item(2).dMax, 2000.0);
    EXPECT_EQ(Item(2).dMin, 1000.0);
}

TEST_F(OutputItems, ValuesBelowTheStartLeaveTheMaximumWhereItStarts) {
    job_.m_pMaxTemperature[1] = -2000.0;
    job_.m_pMaxTemperature[2] = -1500.0;
    Written();
    EXPECT_EQ(Item(2).dMax, -1000.0);
    EXPECT_EQ(Item(2).dMin, -2000.0);
}

TEST_F(OutputItems, OfEqualValuesTheFirstIsTheLimit) {
    job_.m_pMaxTemperature[1] = -0.0;
    job_.m_pMaxTemperature[2] = 0.0;
    Written();
    EXPECT_TRUE(std::signbit(Item(2).dMax));
    EXPECT_TRUE(std::signbit(Item(2).dMin));
}

TEST_F(OutputItems, LimitsRunOverNodesThatAreNotWrittenToo) {
    job_.m_pCenterTemperature[2] = 40.0;
    Written();
    EXPECT_EQ(Item(3).dMax, 40.0);
    EXPECT_EQ(Item(3).dMin, 0.0) << "a node without centre temperature is not written";
}
