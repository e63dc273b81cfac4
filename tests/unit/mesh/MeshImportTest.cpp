#include "mesh/MeshImport.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <memory>
#include <utility>
#include <vector>

#include "support/CapturedOutput.h"
#include "support/ScriptedKernel.h"
#include "support/SetClock.h"

namespace {

using Calls = std::vector<std::string>;

class MeshImportTest : public ::testing::Test {
protected:
    MeshImportTest() {
        fake::TheKernel().calls.clear();
        fake::TheKernel().readStatus = 1;
        CQNLOptKer& kernel = *job_.m_pOptKer;
        nodes_[2].label = 40;
        nodes_[1].label = 7;
        kernel.p_Node = nodes_;
        kernel.p_Surfce = &face_;
        kernel.p_Cell = &cell_;
        kernel.m_pIsPartNodeTemp = ints_;
        kernel.m_pNotRunnerNode = ints_ + 1;
        kernel.m_pNodeGlobalIdToLocal = ints_ + 2;
        kernel.m_pIsRunnerCell = ints_ + 3;
        kernel.m_nNodes = 2;
        kernel.m_nCells = 3;
        kernel.m_nSurfaces = 4;
        kernel.m_nMeshHeader0 = 5;
        kernel.m_nMeshWord56 = 1234567890123;
        kernel.m_bUseNodeLabel = 1;
        for (int i = 0; i < 6; ++i) {
            kernel.m_dBox[i] = 10.0 + i;
        }
        kernel.m_dMeshSize = 0.5;
        kernel.m_dGeomTolerance = 0.25;
    }

    FrozenLayerJob job_;
    NodeRecord nodes_[3] = {};
    SurfaceRecord face_ = {};
    CellRecord cell_ = {};
    int ints_[4] = {};
};

TEST_F(MeshImportTest, ReadMeshHandsTheStatusOn) {
    job_.m_szMeshFile.Set("D:\\P\\Mesh\\part.hdf");
    job_.m_pCom = std::make_unique<CQNLCom>();
    EXPECT_EQ(qnl::mesh::ReadMesh(job_), 1);
    fake::TheKernel().readStatus = -3;
    job_.m_bKernelFlag = 1;
    EXPECT_EQ(qnl::mesh::ReadMesh(job_), -3);
    EXPECT_EQ(fake::TheKernel().calls,
              (Calls{"ReadMeshData D:\\P\\Mesh\\part.hdf 0", "ReadMeshData D:\\P\\Mesh\\part.hdf 1"}));
}

TEST_F(MeshImportTest, ReadMeshLogsItsTime) {
    job_.m_pCom = std::make_unique<CQNLCom>();
    fake::TheClock().step = 1.5;
    const CapturedOutput output;
    qnl::mesh::ReadMesh(job_);
    EXPECT_EQ(output.Text(), "");
    job_.m_nLogLevel = 1;
    qnl::mesh::ReadMesh(job_);
    EXPECT_EQ(output.Text(), "ReadMeshData Time: 1.5 seconds\n");
}

TEST_F(MeshImportTest, ReadMeshNeedsNoClock) {
    EXPECT_EQ(qnl::mesh::ReadMesh(job_), 1);
}

TEST_F(MeshImportTest, TakeOverCopiesCountsAndBorrowsArrays) {
    EXPECT_EQ(qnl::mesh::TakeOverMeshData(job_), 1);
    EXPECT_EQ(job_.m_nNodes, 2);
    EXPECT_EQ(job_.m_nCells, 3);
    EXPECT_EQ(job_.m_nSurfaces, 4);
    EXPECT_EQ(job_.m_nMeshHeader0, 5);
    EXPECT_EQ(job_.m_nMeshWord56, 1234567890123);
    EXPECT_EQ(job_.m_bUseNodeLabel, 1);
    EXPECT_EQ(job_.m_dMeshSize, 0.5);
    EXPECT_EQ(job_.m_dGeomTolerance, 0.25);
    EXPECT_EQ(job_.p_Node, nodes_);
    EXPECT_EQ(job_.p_Surfce, &face_);
    EXPECT_EQ(job_.p_Cell, &cell_);
    EXPECT_EQ(job_.m_pIsPartNodeTemp, ints_);
    EXPECT_EQ(job_.m_pNotRunnerNode, ints_ + 1);
    EXPECT_EQ(job_.m_pNodeGlobalIdToLocal, ints_ + 2);
    EXPECT_EQ(job_.m_pIsRunnerCell, ints_ + 3);
    EXPECT_EQ(job_.m_nMaxLabel, 40);
}

TEST_F(MeshImportTest, TheBoxHasItsMaximaFirst) {
    qnl::mesh::TakeOverMeshData(job_);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(job_.m_dBoxMax[i], 10.0 + i);
        EXPECT_EQ(job_.m_dBoxMin[i], 13.0 + i);
    }
}

TEST_F(MeshImportTest, AMissingCellArrayStopsTheTakeOver) {
    job_.m_nLogLevel = 1;
    job_.m_pOptKer->p_Cell = nullptr;
    const CapturedOutput output;
    EXPECT_EQ(qnl::mesh::TakeOverMeshData(job_), -1);
    EXPECT_EQ(output.Text(), "p_Cell Error!\n");
    EXPECT_EQ(job_.p_Node, nodes_);
    EXPECT_EQ(job_.p_Surfce, &face_);
    EXPECT_EQ(job_.m_pIsPartNodeTemp, nullptr);
}

TEST_F(MeshImportTest, ConstantsAreTakenOverBeforeTheFirstMissingArray) {
    job_.m_pOptKer->p_Node = nullptr;
    EXPECT_EQ(qnl::mesh::TakeOverMeshData(job_), -1);
    EXPECT_EQ(job_.m_nNodes, 2);
    EXPECT_EQ(job_.m_nCells, 3);
    EXPECT_EQ(job_.m_nSurfaces, 4);
    EXPECT_EQ(job_.m_nMeshHeader0, 5);
    EXPECT_EQ(job_.m_nMeshWord56, 1234567890123);
    EXPECT_EQ(job_.m_bUseNodeLabel, 1);
    EXPECT_EQ(job_.m_dBoxMax[0], 10.0);
    EXPECT_EQ(job_.m_dBoxMin[2], 15.0);
    EXPECT_EQ(job_.m_dMeshSize, 0.5);
    EXPECT_EQ(job_.m_dGeomTolerance, 0.25);
}

TEST_F(MeshImportTest, EveryMissingArrayIsNamed) {
    job_.m_nLogLevel = 1;
    CQNLOptKer& kernel = *job_.m_pOptKer;
    const auto missing = [&](auto& array, const char* message) {
        const auto kept = std::exchange(array, nullptr);
        const CapturedOutput output;
        EXPECT_EQ(qnl::mesh::TakeOverMeshData(job_), -1);
        EXPECT_EQ(output.Text(), message);
        array = kept;
    };
    missing(kernel.p_Node, "p_Node Error!\n");
    missing(kernel.p_Surfce, "p_Surfce Error!\n");
    missing(kernel.p_Cell, "p_Cell Error!\n");
    missing(kernel.m_pIsPartNodeTemp, "m_pIsPartNodeTemp Error!\n");
    missing(kernel.m_pNotRunnerNode, "m_pNotRunnerNode Error!\n");
    missing(kernel.m_pNodeGlobalIdToLocal, "m_pNodeGlobalIdToLocal Error!\n");
    missing(kernel.m_pIsRunnerCell, "m_pIsRunnerCell Error!\n");
}

TEST_F(MeshImportTest, AFailedTakeOverIsSilentAtLogLevelZero) {
    job_.m_pOptKer->p_Node = nullptr;
    const CapturedOutput output;
    EXPECT_EQ(qnl::mesh::TakeOverMeshData(job_), -1);
    EXPECT_EQ(output.Text(), "");
}

TEST_F(MeshImportTest, ThreadCountIsTheRuntimesOwn) {
    omp_set_num_threads(3);
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    qnl::mesh::SetUpThreads(job_);
    EXPECT_EQ(job_.m_nThreads, 3);
    EXPECT_EQ(output.Text(), "nThread = 3\n");
    EXPECT_EQ(fake::TheKernel().calls, (Calls{"InitialzeSearch 3"}));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(job_.m_pThreadFindCount.get()[i], 0);
        EXPECT_EQ(job_.m_pThreadRecordCount.get()[i], 0);
        EXPECT_EQ(job_.m_pThreadFindTime.get()[i], 0.0);
    }
}

}  // namespace
