#include "job/EntryRoutine.h"

#include <iostream>
#include <new>
#include <optional>

#include "context/FrozenLayerJob.h"
#include "context/Messages.h"
#include "input/MaterialData.h"
#include "input/ResultFileSet.h"
#include "job/CommandLine.h"
#include "job/OutputTimes.h"
#include "job/RunSummary.h"
#include "mesh/FieldStorage.h"
#include "mesh/MeshImport.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/QnlMaterial.h"

namespace qnl::job {

namespace {

void ApplyOptions(FrozenLayerJob& job, const RunOptions& options) {
    job.m_options = options;
    job.m_nLogLevel = options.logLevel;
    job.m_bKernelFlag = options.fibreProbe ? 1 : 0;
}

ExitCode OpenMaterial(FrozenLayerJob& job) {
    job.m_nStage = 0;
    QnlMaterial* material = QnlGetMaterial(job.m_szMaterialFile.Text());
    if (material == nullptr) {
        PrintPlain("Read Material - Fail \n");
        return ExitCode::MaterialFailed;
    }
    return ReadMaterialData(job, material) == 1 ? ExitCode::Normal : ExitCode::MaterialFailed;
}

ExitCode OpenMesh(FrozenLayerJob& job) {
    if (mesh::ReadMesh(job) != 1) {
        return ExitCode::MeshFailed;
    }
    mesh::SetUpThreads(job);
    return mesh::TakeOverMeshData(job) == 1 ? ExitCode::Normal : ExitCode::MeshFailed;
}

ExitCode RunStages(FrozenLayerJob& job, int argc, char** argv) {
    HandleCommandLine(job, argc, argv);
    SelectResultFiles(job);
    if (const ExitCode code = OpenMaterial(job); code != ExitCode::Normal) {
        return code;
    }
    if (const ExitCode code = OpenMesh(job); code != ExitCode::Normal) {
        return code;
    }
    mesh::NewDataStorage(job);
    EvaluateOutputTimes(job, job.m_szInputResult);
    if (job.m_options.observer != nullptr) {
        job.m_options.observer->RunEnds(job);
    }
    mesh::FreeMemory(job);
    if (job.m_nLogLevel >= 1) {
        MakeRunSummary(job);
    }
    return ExitCode::Normal;
}

}  // namespace

int RunFrozenLayer(int argc, char** argv, const RunOptions& options) {
    std::optional<FrozenLayerJob> job;
    try {
        job.emplace();
        ApplyOptions(*job, options);
        job->m_szInputResult = argv[0];
        return static_cast<int>(RunStages(*job, argc, argv));
    } catch (const std::bad_alloc& failure) {
        if (job) {
            job->m_pBadAlloc = &failure;
        }
        CQNLKNLogErrMsgTool::printErrorOutofMemory("", std::cout);
    } catch (...) {
        CQNLKNLogErrMsgTool::printErrorOutofMemory("", std::cout);
    }
    return static_cast<int>(ExitCode::Exception);
}

}  // namespace qnl::job
