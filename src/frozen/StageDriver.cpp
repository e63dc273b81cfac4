#include "frozen/StageDriver.h"

#include "context/Messages.h"
#include "frozen/NodeSelection.h"
#include "frozen/ResultSmoothing.h"
#include "frozen/SearchRecords.h"
#include "frozen/SinkMarkDisplacement.h"
#include "frozen/SinkVectors.h"
#include "frozen/SpecialNodes.h"
#include "frozen/SurfaceNormals.h"
#include "frozen/VelocityThinning.h"
#include "mesh/FieldStorage.h"
#include "output/BinaryResult.h"
#include "output/SinkFile.h"
#include "probe/FibreProbe.h"
#include "profile/NodeLoop.h"

namespace qnl::frozen {

namespace {

void PrepareNormals(FrozenLayerJob& job) {
    const bool firstCall = g_bDriverFirstCall;
    if (firstCall) {
        g_bDriverFirstCall = false;
        mesh::NewFrozenStorage(job);
    }
    if (firstCall || job.m_options.corrected) {
        ComputeSurfaceNormals(job);
    }
    mesh::EnsureComputedArrays(job);
    if (job.m_bHasIntermediateTimes == 1) {
        SmoothSurfaceNormals(*job.m_pOptKer, job.m_pNormalX.get(), job.m_pNormalY.get(),
                             job.m_pNormalZ.get());
    }
}

void DeriveSinkMarks(FrozenLayerJob& job) {
    if (job.m_bHasWarp == 1) {
        LogLine(job, "ComputeSinkMarkDisplacement");
        ComputeSinkMarkDisplacement(job, job.m_pFrozenRatio.get());
    } else if (job.m_bHasIntermediateTimes == 1) {
        SubtractSinkReference(job);
    }
    if (job.m_bHasIntermediateTimes == 1) {
        TurnNormalsIntoSinkVectors(job);
        if (job.m_nLogLevel > 0) {
            output::WriteSinkFile(job, job.m_pNormalX.get(), job.m_pNormalY.get(), job.m_pNormalZ.get());
        }
    }
}

void WriteResult(FrozenLayerJob& job) {
    const double start = job.m_pCom->Time();
    output::WriteBinaryResult(job);
    LogSeconds(job, "OutputFrozenCalcuResults Time: ", job.m_pCom->Time() - start);
}

}  // namespace

int RunFrozenLayerStage(FrozenLayerJob& job) {
    PrepareNormals(job);
    SelectSurfaceNodes(job);
    PrepareSearchRecords(job);
    if (job.m_bKernelFlag == 1) {
        probe::RunFibreProbe(job);
        return 1;
    }
    profile::EvaluateSurfaceNodes(job);
    ClearSpecialNodes(job);
    ThinOutVelocities(job);
    LogLine(job, "Calcu Frozen From SurfaceNodeAndNormal end");
    SmoothResults(job);
    LogLine(job, "Smooth SurfaceNodeValue end");
    DeriveSinkMarks(job);
    WriteResult(job);
    return 1;
}

}  // namespace qnl::frozen
