#include "runs/RunProgress.h"

#include "base/WindowsPath.h"
#include "context/FrozenLayerJob.h"
#include "context/RunConditions.h"
#include "host/Interrupts.h"
#include "mesh/MeshNodes.h"
#include "project/FaultReport.h"
#include "project/ProjectPaths.h"
#include "project/StageGaps.h"
#include "text/NumberText.h"

namespace qnl::runs {

namespace {

void CheckCompanion(const std::string& resultFile, StageKind kind) {
    const project::StageSummary summary = project::ReadStageSummary(resultFile);
    project::RecordNodeIdMisuse(resultFile, summary);
    project::RecordAbsentItems(resultFile, kind, summary);
}

/// Nodes of the part for which the result has no entry; they count as 0. Of rows with labels only their
/// number is known here.
int NodesWithoutEntry(const FrozenLayerJob& job, const project::StageSummary& summary) {
    int parts = 0;
    int beyond = 0;
    for (int n = 1; n <= job.m_nNodes; ++n) {
        if (mesh::IsPartNode(job, NodeId(n))) {
            ++parts;
            beyond += mesh::LabelOf(job, NodeId(n)).Value() > summary.nodes ? 1 : 0;
        }
    }
    return summary.hasNodeIds ? std::max(parts - summary.nodes, 0) : beyond;
}

void RecordNodesWithoutEntry(const FrozenLayerJob& job, const std::string& stageFile,
                             const project::StageSummary& summary) {
    const int count = summary.isBinary ? NodesWithoutEntry(job, summary) : 0;
    if (count > 0) {
        RecordFault({stageFile, "node entries", "one for each node of the part",
                     "none for " + text::CountText(count, "node") + ", which count as 0",
                     "use the result that was computed on this mesh"});
    }
}

}  // namespace

void RunProgress::TimeBegins(int index, int intermediateTimes, const char* stageFile) {
    begin_ = Clock::now();
    timeCount_ = intermediateTimes + 1 - wishes_.keptTimes;
    const project::StageSummary summary = project::ReadStageSummary(stageFile);
    times_.push_back({{index, summary.seconds}, stageFile, "", false, {}, {}});
    if (wishes_.stage && *wishes_.stage != StageKind::Cool) {
        project::RecordNodeIdMisuse(stageFile, summary);
    }
    if (wishes_.stage) {
        project::RecordAbsentItems(stageFile, *wishes_.stage, summary);
    }
    summary_ = summary;
    ShowShare(0.0);
}

void RunProgress::NodesEvaluated(int done, int total) {
    ShowShare(total > 0 ? static_cast<double>(done) / total : 1.0);
}

void RunProgress::TimeEnds(int /*index*/, bool evaluated, const FrozenLayerJob& job) {
    EvaluatedTime& time = times_.back();
    time.evaluated = evaluated;
    time.resultFile = job.m_szResultFile.Text();
    if (!evaluated) {
        bar_.Line(Title() + ": not evaluated, " + project::NativePath(time.stageFile) + " could not be read");
        return;
    }
    RecordNodesWithoutEntry(job, time.stageFile, summary_);
    CheckCompanions(job);
    if (job.m_bKernelFlag == 1) {
        return;  // the probe evaluates no surface nodes
    }
    time.walls = series::WallsOfRun(job);
    const std::chrono::duration<double> elapsed = Clock::now() - begin_;
    bar_.Line(Title() + ": " + text::CountText(job.m_nSurfaceNodes, "surface node") + " evaluated in " +
              text::NumberText(elapsed.count()) + " s");
}

void RunProgress::RunEnds(const FrozenLayerJob& job) {
    if (job.m_bKernelFlag != 1) {
        walls_ = series::CountDeepWalls(job);
    }
    gradients_ = job.m_fieldReport;
    view_ = {job.m_options.mode, SmoothsNormals(job)};
    isThermoset_ = job.m_bIsThermoset != 0;
    if (wishes_.keepMesh) {
        mesh_ = kernel::TakeMesh(*job.m_pOptKer);
    }
    bar_.Clear();
}

std::string RunProgress::Title() const {
    const std::string place = std::to_string(times_.size()) + " of " + std::to_string(timeCount_);
    return "Output time " + times_.back().time.Text() + " (" + place + ")";
}

bool RunProgress::IsInterrupted() {
    return host::NotedInterrupt() != 0;
}

void RunProgress::ShowShare(double shareOfTime) {
    host::RaiseIfInterrupted();
    const double before = static_cast<double>(times_.size() - 1);
    bar_.Show((before + shareOfTime) / timeCount_, Title());
}

void RunProgress::CheckCompanions(const FrozenLayerJob& job) const {
    if (job.m_bIsFlakeLightIntensity == 1) {
        CheckCompanion(ReplaceExtension(times_.back().stageFile, kFibreExtension), StageKind::Fibre);
    }
    if (job.m_bIsGasIn == 1) {
        CheckCompanion(ReplaceExtension(job.m_szMeshFile.View(), kThicknessExtension), StageKind::Thickness);
    }
}

}  // namespace qnl::runs
