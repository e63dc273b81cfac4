#include "runs/RunProgress.h"

#include "base/WindowsPath.h"
#include "context/FrozenLayerJob.h"
#include "context/RunConditions.h"
#include "platform/Stages.h"
#include "project/FaultReport.h"
#include "project/ProjectPaths.h"
#include "text/NumberText.h"

namespace qnl::runs {

namespace {

void RecordNodeIdMisuse(const std::string& resultFile) {
    project::RecordNodeIdMisuse(resultFile, project::ReadStageSummary(resultFile));
}

}  // namespace

void RunProgress::TimeBegins(int index, int intermediateTimes, const char* stageFile) {
    begin_ = Clock::now();
    timeCount_ = intermediateTimes + 1;
    const project::StageSummary summary = project::ReadStageSummary(stageFile);
    times_.push_back({{index, summary.seconds}, stageFile, "", false, {}, {}});
    if (wishes_.checkNodeIds) {
        project::RecordNodeIdMisuse(stageFile, summary);
    }
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

void RunProgress::ShowShare(double shareOfTime) {
    const double before = static_cast<double>(times_.size() - 1);
    bar_.Show((before + shareOfTime) / timeCount_, Title());
}

void RunProgress::CheckCompanions(const FrozenLayerJob& job) const {
    if (job.m_bIsFlakeLightIntensity == 1) {
        RecordNodeIdMisuse(ReplaceExtension(times_.back().stageFile, kFibreExtension));
    }
    if (job.m_bIsGasIn == 1) {
        RecordNodeIdMisuse(ReplaceExtension(job.m_szMeshFile.View(), kThicknessExtension));
    }
}

}  // namespace qnl::runs
