#include "frozen/StageDriver.h"

#include <utility>

#include "context/Messages.h"
#include "context/RunConditions.h"
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

/// True on the first call in a run, and only then.
bool TakeFirstCall() {
    return std::exchange(g_bDriverFirstCall, false);
}

/// A flag may turn on with a later file: arrays that it asks for are then still missing.
void PrepareStorage(FrozenLayerJob& job, bool firstCall) {
    if (firstCall) {
        mesh::NewFrozenStorage(job);
    } else {
        mesh::EnsureComputedArrays(job);
    }
}

void PrepareNormals(FrozenLayerJob& job, bool firstCall) {
    if (firstCall || job.m_options.corrected) {
        ComputeSurfaceNormals(job);
    }
    if (HasIntermediateTimes(job)) {
        SmoothSurfaceNormals(*job.m_pOptKer, job.m_pNormalX.get(), job.m_pNormalY.get(),
                             job.m_pNormalZ.get());
    }
}

void DeriveSinkMarks(FrozenLayerJob& job) {
    if (job.m_bHasWarp == 1) {
        LogLine(job, "ComputeSinkMarkDisplacement");
        ComputeSinkMarkDisplacement(job, job.m_pFrozenRatio.get());
    } else if (HasIntermediateTimes(job)) {
        SubtractSinkReference(job);
    }
    if (HasIntermediateTimes(job)) {
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
    const bool firstCall = TakeFirstCall();
    PrepareStorage(job, firstCall);
    PrepareNormals(job, firstCall);
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
