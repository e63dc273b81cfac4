#include "job/RunSequence.h"

#include <array>
#include <string>

#include "context/Messages.h"
#include "context/ObservedStep.h"
#include "input/MaterialData.h"
#include "input/ResultFileSet.h"
#include "job/CommandLine.h"
#include "job/OutputTimes.h"
#include "job/RunSummary.h"
#include "mesh/FieldStorage.h"
#include "mesh/MeshImport.h"
#include "platform/QnlMaterial.h"

namespace qnl::job {

namespace {

bool OpenMaterial(FrozenLayerJob& job) {
    job.m_nStage = 0;
    QnlMaterial* material = QnlGetMaterial(job.m_szMaterialFile.Text());
    if (material == nullptr) {
        PrintPlain("Read Material - Fail \n");
        return false;
    }
    return ReadMaterialData(job, material) == 1;
}

bool EvaluateAll(FrozenLayerJob& job) {
    EvaluateOutputTimes(job, job.m_szInputResult);
    if (job.m_options.observer != nullptr) {
        job.m_options.observer->RunEnds(job);
    }
    return true;
}

bool NoteInputs(FrozenLayerJob& job) {
    for (const qnl::PathText* path : {&job.m_szRunFile, &job.m_szMaterialFile, &job.m_szMeshFile}) {
        job.m_inputDigests.Of(std::string(path->View()));
    }
    return true;
}

bool Always(const FrozenLayerJob& /*job*/) {
    return true;
}

bool WritesResults(const FrozenLayerJob& job) {
    return job.m_bKernelFlag != 1;
}

bool IsReported(const FrozenLayerJob& job) {
    return job.m_nLogLevel >= 1;
}

struct Step {
    RunStep name;
    bool (*run)(FrozenLayerJob&, const LauncherCall&);  ///< false: the run ends with `failure`
    ExitCode failure = ExitCode::Normal;
    bool (*applies)(const FrozenLayerJob&) = Always;
};

// A missing run file and a result name of no stage do not end the run; the material and the mesh do.
constexpr std::array<Step, 11> kSteps{{
    {RunStep::CommandLine,
     [](FrozenLayerJob& job, const LauncherCall& call) {
         HandleCommandLine(job, call.argc, call.argv);
         return true;
     }},
    {RunStep::InputDigests, [](FrozenLayerJob& job, const LauncherCall&) { return NoteInputs(job); },
     ExitCode::Normal, WritesResults},
    {RunStep::ResultFiles,
     [](FrozenLayerJob& job, const LauncherCall&) { return SelectResultFiles(job) == 1; }},
    {RunStep::Material, [](FrozenLayerJob& job, const LauncherCall&) { return OpenMaterial(job); },
     ExitCode::MaterialFailed},
    {RunStep::Mesh, [](FrozenLayerJob& job, const LauncherCall&) { return mesh::ReadMesh(job) == 1; },
     ExitCode::MeshFailed},
    {RunStep::Threads,
     [](FrozenLayerJob& job, const LauncherCall&) {
         mesh::SetUpThreads(job);
         return true;
     }},
    {RunStep::MeshData,
     [](FrozenLayerJob& job, const LauncherCall&) { return mesh::TakeOverMeshData(job) == 1; },
     ExitCode::MeshFailed},
    {RunStep::Storage,
     [](FrozenLayerJob& job, const LauncherCall&) { return mesh::NewDataStorage(job) == 1; }},
    {RunStep::OutputTimes, [](FrozenLayerJob& job, const LauncherCall&) { return EvaluateAll(job); }},
    {RunStep::Release, [](FrozenLayerJob& job, const LauncherCall&) { return mesh::FreeMemory(job) == 1; }},
    {RunStep::Report, [](FrozenLayerJob& job, const LauncherCall&) { return MakeRunSummary(job) == 1; },
     ExitCode::Normal, IsReported},
}};

}  // namespace

SequenceEnd RunSteps(FrozenLayerJob& job, RunStep first, RunStep last, const LauncherCall& call) {
    for (const Step& step : kSteps) {
        const bool asked = first <= step.name && step.name <= last && step.applies(job);
        if (asked && !Observed(job, step.name, [&] { return step.run(job, call); }) &&
            step.failure != ExitCode::Normal) {
            return {step.failure, step.name};
        }
    }
    return {ExitCode::Normal, last};
}

}  // namespace qnl::job
