#include "mesh/FieldStorage.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "support/CapturedOutput.h"
#include "support/ScriptedKernel.h"

namespace {

struct NamedArray {
    const char* name;
    qnl::OwnedArray<double> FrozenLayerJob::*array;
};

constexpr NamedArray kComputed[] = {
    {"frozen", &FrozenLayerJob::m_pFrozenRatio},
    {"max", &FrozenLayerJob::m_pMaxTemperature},
    {"center", &FrozenLayerJob::m_pCenterTemperature},
    {"average", &FrozenLayerJob::m_pAverageTemperature},
    {"bulk", &FrozenLayerJob::m_pBulkTemperature},
    {"skin", &FrozenLayerJob::m_pSkinRatio},
    {"mold", &FrozenLayerJob::m_pMoldTemperatureDiff},
    {"cooling", &FrozenLayerJob::m_pMaxCoolingTime},
    {"thickness", &FrozenLayerJob::m_pSkinThickness},
    {"work", &FrozenLayerJob::m_pSinkMarkWork},
    {"total", &FrozenLayerJob::m_pSinkMarkTotal},
    {"packing", &FrozenLayerJob::m_pPackingIndex},
    {"shrinkage", &FrozenLayerJob::m_pMaxVolumeShrinkage},
    {"u", &FrozenLayerJob::m_pAverageVelocityU},
    {"v", &FrozenLayerJob::m_pAverageVelocityV},
    {"w", &FrozenLayerJob::m_pAverageVelocityW},
    {"flake", &FrozenLayerJob::m_pFlakeColorIntensity},
};

using Names = std::set<std::string>;

class FieldStorageTest : public ::testing::Test {
protected:
    FieldStorageTest() {
        fake::TheKernel().calls.clear();
        job_.m_nNodes = 4;
        job_.m_nSurfaces = 3;
        job_.m_nCells = 2;
    }
    Names Computed() const {
        Names names;
        for (const NamedArray& named : kComputed) {
            if (job_.*named.array) {
                names.insert(named.name);
            }
        }
        return names;
    }

    FrozenLayerJob job_;
};

const Names kAlways{"frozen", "max", "center", "average"};

Names With(Names names) {
    names.insert(kAlways.begin(), kAlways.end());
    return names;
}

TEST_F(FieldStorageTest, DataStorageWithoutFlow) {
    EXPECT_EQ(qnl::mesh::NewDataStorage(job_), 1);
    for (int slot = 0; slot < qnl::kFieldSlots; ++slot) {
        EXPECT_TRUE(job_.m_pNodeData[slot]);
        EXPECT_TRUE(job_.m_pSurfData[slot]);
        EXPECT_TRUE(job_.m_pCellData[slot]);
        EXPECT_FALSE(job_.m_pCellFiber[slot]);
    }
    EXPECT_FALSE(job_.m_pNodeVector[0]);
    EXPECT_FALSE(job_.m_pCellVector[0]);
    EXPECT_FALSE(job_.m_pSurfTree);
}

TEST_F(FieldStorageTest, FlowHasVectorsAndATreeWithAMargin) {
    job_.m_bHasFlow = 1;
    job_.m_dMeshSize = 0.5;
    for (int i = 0; i < 3; ++i) {
        job_.m_dBoxMax[i] = 10.0 * (i + 1);
        job_.m_dBoxMin[i] = -1.0 * (i + 1);
    }
    qnl::mesh::NewDataStorage(job_);
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(job_.m_pNodeVector[k]);
        EXPECT_TRUE(job_.m_pCellVector[k]);
    }
    EXPECT_TRUE(job_.m_pSurfTree);
    EXPECT_EQ(fake::TheKernel().calls,
              std::vector<std::string>{"SetADTreeRange 15 25 35 -6 -7 -8 1 10000 200000"});
    qnl::mesh::NewDataStorage(job_);
    EXPECT_EQ(fake::TheKernel().calls.size(), 1U);
    EXPECT_EQ(fake::TheKernel().kernelsAlive, 2);
}

TEST_F(FieldStorageTest, FibreArraysForTheProbeAndForFlakes) {
    for (unsigned char FrozenLayerJob::*flag :
         {&FrozenLayerJob::m_bKernelFlag, &FrozenLayerJob::m_bIsFlakeLightIntensity}) {
        FrozenLayerJob job;
        job.*flag = 1;
        qnl::mesh::NewDataStorage(job);
        for (const auto& slot : job.m_pCellFiber) {
            EXPECT_TRUE(slot);
        }
    }
}

TEST_F(FieldStorageTest, DataStorageTwiceKeepsArraysAndZeroesThem) {
    job_.m_bHasFlow = 1;
    qnl::mesh::NewDataStorage(job_);
    const double* node = job_.m_pNodeData[5].get();
    const float* vector = job_.m_pCellVector[2].get();
    job_.m_pNodeData[5].get()[4] = 1.0;
    job_.m_pNodeData[5].get()[0] = 1.0;
    job_.m_pSurfData[1].get()[3] = 1.0;
    job_.m_pCellVector[2].get()[2] = 1.0F;
    qnl::mesh::NewDataStorage(job_);
    EXPECT_EQ(job_.m_pNodeData[5].get(), node);
    EXPECT_EQ(job_.m_pCellVector[2].get(), vector);
    EXPECT_EQ(node[4], 0.0);
    EXPECT_EQ(node[0], 0.0);
    EXPECT_EQ(job_.m_pSurfData[1].get()[3], 0.0);
    EXPECT_EQ(vector[2], 0.0F);
}

TEST_F(FieldStorageTest, ArraysHaveOneEntryMoreThanTheirCount) {
    // An access beyond the last entry is for the address sanitizer to find.
    qnl::mesh::NewDataStorage(job_);
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(job_.m_pNodeData[0].get()[4], 0.0);
    EXPECT_EQ(job_.m_pSurfData[0].get()[3], 0.0);
    EXPECT_EQ(job_.m_pCellData[0].get()[2], 0.0);
    EXPECT_EQ(job_.m_pFrozenRatio.get()[4], 0.0);
    EXPECT_EQ(job_.m_pSurfNodeFlag.get()[4], 0);
}

TEST_F(FieldStorageTest, ComputedArraysFollowTheFlags) {
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(Computed(), With({"bulk"}));
    EXPECT_TRUE(job_.m_pSurfNodeFlag);
    job_.m_bIsGasIn = 1;
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(Computed(), With({"bulk", "skin", "thickness"}));
    job_.m_bFillHasCoolingTime = 1;
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(Computed(), With({"bulk", "skin", "thickness", "cooling"}));
    job_.m_bIsFlakeLightIntensity = 1;
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(Computed(), With({"bulk", "skin", "thickness", "cooling", "flake"}));
}

TEST_F(FieldStorageTest, CoolingRunsHaveNoSkinBulkOrFlakeArrays) {
    job_.m_bHasCool = job_.m_bIsGasIn = job_.m_bFillHasCoolingTime = job_.m_bIsFlakeLightIntensity = 1;
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(Computed(), With({"mold", "cooling"}));
}

TEST_F(FieldStorageTest, SinkAndFlowGroupsFollowTheirFlagsInCoolingRunsToo) {
    job_.m_bHasCool = job_.m_bHasIntermediateTimes = job_.m_bHasFlow = 1;
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(Computed(), With({"mold", "cooling", "work", "total", "packing", "shrinkage", "u", "v", "w"}));
}

TEST_F(FieldStorageTest, FrozenStorageTwiceKeepsArraysAndZeroesThem) {
    qnl::mesh::NewFrozenStorage(job_);
    const double* ratio = job_.m_pFrozenRatio.get();
    job_.m_pFrozenRatio.get()[4] = 50.0;
    job_.m_pSurfNodeFlag.get()[4] = 1;
    qnl::mesh::NewFrozenStorage(job_);
    EXPECT_EQ(job_.m_pFrozenRatio.get(), ratio);
    EXPECT_EQ(ratio[4], 0.0);
    EXPECT_EQ(job_.m_pSurfNodeFlag.get()[4], 0);
}

TEST_F(FieldStorageTest, OnNeedOnlyMissingArraysAreMade) {
    qnl::mesh::NewFrozenStorage(job_);
    job_.m_pFrozenRatio.get()[4] = 50.0;
    job_.m_bIsGasIn = 1;
    qnl::mesh::EnsureComputedArrays(job_);
    EXPECT_EQ(Computed(), With({"bulk", "skin", "thickness"}));
    EXPECT_EQ(job_.m_pFrozenRatio.get()[4], 50.0);
    EXPECT_EQ(job_.m_pSkinRatio.get()[4], 0.0);
}

TEST_F(FieldStorageTest, FreeMemoryKeepsInputNormalsAndFlowGroup) {
    job_.m_bHasFlow = job_.m_bHasIntermediateTimes = job_.m_bIsGasIn = 1;
    job_.m_bFillHasCoolingTime = job_.m_bIsFlakeLightIntensity = 1;
    qnl::mesh::NewDataStorage(job_);
    qnl::mesh::NewFrozenStorage(job_);
    job_.m_pNormalX = std::make_unique<double[]>(5);
    job_.m_pOutputItems = std::make_unique<qnl::OutputItem[]>(20);
    job_.m_pSurfNodeList = std::make_unique<int[]>(5);
    EXPECT_EQ(qnl::mesh::FreeMemory(job_), 1);
    EXPECT_EQ(Computed(), (Names{"shrinkage", "u", "v", "w"}));
    EXPECT_FALSE(job_.m_pSurfNodeFlag);
    EXPECT_FALSE(job_.m_pOutputItems);
    EXPECT_FALSE(job_.m_pSurfNodeList);
    EXPECT_TRUE(job_.m_pNodeData[0]);
    EXPECT_TRUE(job_.m_pNormalX);
    EXPECT_EQ(qnl::mesh::FreeMemory(job_), 1);
}

TEST_F(FieldStorageTest, FreeMemoryReleasesNothingElse) {
    job_.m_bHasFlow = job_.m_bKernelFlag = 1;
    qnl::mesh::NewDataStorage(job_);
    for (auto* array :
         {&job_.m_pNormalX, &job_.m_pNormalY, &job_.m_pNormalZ, &job_.m_pWarpDisplacement[0],
          &job_.m_pWarpDisplacement[1], &job_.m_pWarpDisplacement[2], &job_.m_pThreadFindTime}) {
        *array = std::make_unique<double[]>(5);
    }
    job_.m_pNodeThickness = std::make_unique<float[]>(5);
    job_.m_pThreadFindCount = std::make_unique<int[]>(2);
    job_.m_pThreadRecordCount = std::make_unique<int[]>(2);
    job_.m_pNodeSearchResults = std::make_unique<CSurfNodeSearch[]>(5);
    job_.m_pHasProfile = std::make_unique<unsigned char[]>(5);
    qnl::mesh::FreeMemory(job_);
    for (std::size_t slot = 0; slot < qnl::kFieldSlots; ++slot) {
        EXPECT_TRUE(job_.m_pNodeData[slot] && job_.m_pSurfData[slot] && job_.m_pCellData[slot]) << slot;
        EXPECT_TRUE(job_.m_pCellFiber[slot]) << slot;
    }
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_TRUE(job_.m_pNodeVector[k] && job_.m_pCellVector[k] && job_.m_pWarpDisplacement[k]) << k;
    }
    EXPECT_TRUE(job_.m_pSurfTree && job_.m_pOptKer);
    EXPECT_TRUE(job_.m_pNormalX && job_.m_pNormalY && job_.m_pNormalZ && job_.m_pNodeThickness);
    EXPECT_TRUE(job_.m_pThreadFindCount && job_.m_pThreadRecordCount && job_.m_pThreadFindTime);
    EXPECT_TRUE(job_.m_pNodeSearchResults && job_.m_pHasProfile);
}

TEST_F(FieldStorageTest, TheCoolingGroupIsReleasedToo) {
    job_.m_bHasCool = 1;
    qnl::mesh::NewFrozenStorage(job_);
    qnl::mesh::FreeMemory(job_);
    EXPECT_EQ(Computed(), Names{});
}

TEST_F(FieldStorageTest, EveryStepIsLogged) {
    const CapturedOutput output;
    qnl::mesh::NewDataStorage(job_);
    qnl::mesh::NewFrozenStorage(job_);
    qnl::mesh::FreeMemory(job_);
    EXPECT_EQ(output.Text(), "");
    job_.m_nLogLevel = 1;
    qnl::mesh::NewDataStorage(job_);
    qnl::mesh::NewFrozenStorage(job_);
    qnl::mesh::FreeMemory(job_);
    EXPECT_EQ(output.Text(), "New Data StorageMemory end\nNewFrozenCalcuMemory end\nfree memory end\n");
}

TEST_F(FieldStorageTest, ANegativeCountCannotBeAllocated) {
    job_.m_nNodes = -5;
    EXPECT_THROW(qnl::mesh::NewDataStorage(job_), std::bad_alloc);
    EXPECT_THROW(qnl::mesh::NewFrozenStorage(job_), std::bad_alloc);
}

}  // namespace
