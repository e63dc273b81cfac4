#include "frozen/StageDriver.h"

#include <array>
#include <cstddef>
#include <utility>

#include "context/Messages.h"
#include "context/ObservedStep.h"
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
    if (firstCall || !job.m_options.Rules().carriesState) {
        ComputeSurfaceNormals(job);
    }
    if (SmoothsNormals(job)) {
        SmoothSurfaceNormals(*job.m_pOptKer, job.m_pNormalX.get(), job.m_pNormalY.get(),
                             job.m_pNormalZ.get());
    }
}

/// The first call of a run finds neither arrays nor normals.
void Prepare(FrozenLayerJob& job) {
    const bool firstCall = TakeFirstCall();
    PrepareStorage(job, firstCall);
    PrepareNormals(job, firstCall);
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

void ThinOut(FrozenLayerJob& job) {
    ThinOutVelocities(job);
    LogLine(job, "Calcu Frozen From SurfaceNodeAndNormal end");
}

void Smooth(FrozenLayerJob& job) {
    SmoothResults(job);
    LogLine(job, "Smooth SurfaceNodeValue end");
}

struct StageStep {
    RunStep name;
    void (*run)(FrozenLayerJob&);
};

constexpr std::array<StageStep, 3> kPreparation{{
    {RunStep::Normals, Prepare},
    {RunStep::Selection, SelectSurfaceNodes},
    {RunStep::SearchRecords, PrepareSearchRecords},
}};
constexpr std::array<StageStep, 1> kProbe{{
    {RunStep::FibreProbe, [](FrozenLayerJob& job) { probe::RunFibreProbe(job); }},
}};
constexpr std::array<StageStep, 6> kEvaluation{{
    {RunStep::Evaluation, profile::EvaluateSurfaceNodes},
    {RunStep::SpecialNodes, ClearSpecialNodes},
    {RunStep::Thinning, ThinOut},
    {RunStep::Smoothing, Smooth},
    {RunStep::SinkMarks, DeriveSinkMarks},
    {RunStep::ResultFile, WriteResult},
}};

template <std::size_t Count>
void RunAll(FrozenLayerJob& job, const std::array<StageStep, Count>& steps) {
    for (const StageStep& step : steps) {
        Observed(job, step.name, [&] {
            step.run(job);
            return true;
        });
    }
}

}  // namespace

int RunFrozenLayerStage(FrozenLayerJob& job) {
    RunAll(job, kPreparation);
    if (job.m_bKernelFlag == 1) {
        RunAll(job, kProbe);
    } else {
        RunAll(job, kEvaluation);
    }
    return 1;
}

}  // namespace qnl::frozen
