#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "context/RunOptions.h"
#include "kernel/MeshKernelState.h"
#include "platform/FieldKernel.h"
#include "platform/Stages.h"
#include "project/OutputTime.h"
#include "results/ResultFile.h"
#include "series/SeriesFiles.h"
#include "series/WallDepth.h"
#include "series/WallReadings.h"
#include "text/ProgressBar.h"

namespace qnl::runs {

/// What became of one output time.
struct EvaluatedTime {
    project::OutputTime time;
    std::string stageFile;
    std::string resultFile;
    bool evaluated = false;
    std::optional<results::ResultFileContent> content;  ///< of the result file, once it is read
    std::vector<series::NodeWall> walls;                ///< as series::WallsOfRun
};

/// What a run is followed for beyond its progress.
struct RunWishes {
    std::optional<StageKind> stage;  ///< what the stage files should hold; unknown: they are not checked
    bool keepMesh = false;           ///< the mesh is wanted after the run
    int keptTimes = 0;               ///< output times that are passed over
};

/// Follows a run: shows its progress and keeps what the report needs.
class RunProgress : public RunObserver {
public:
    RunProgress(text::ProgressBar& bar, const RunWishes& wishes) : bar_(bar), wishes_(wishes) {}

    void TimeBegins(int index, int intermediateTimes, const char* stageFile) override;
    void NodesEvaluated(int done, int total) override;
    void TimeEnds(int index, bool evaluated, const FrozenLayerJob& job) override;
    void RunEnds(const FrozenLayerJob& job) override;

    /// Whether the run ends before its time because a signal was noted.
    static bool IsInterrupted();

    std::vector<EvaluatedTime> TakeTimes() { return std::move(times_); }
    const series::RunView& View() const { return view_; }
    bool IsThermoset() const { return isThermoset_; }
    /// The mesh of a run that came to its end, when it was wished for; once.
    std::optional<kernel::KernelMesh> TakeMesh() { return std::exchange(mesh_, std::nullopt); }
    const series::DeepWalls& Walls() const { return walls_; }
    const GradientReport& Gradients() const { return gradients_; }

private:
    using Clock = std::chrono::steady_clock;

    std::string Title() const;
    /// Raises Interrupted in an interrupted program.
    void ShowShare(double shareOfTime);
    void CheckCompanions(const FrozenLayerJob& job) const;

    text::ProgressBar& bar_;
    RunWishes wishes_;
    int timeCount_ = 1;
    Clock::time_point begin_;
    std::vector<EvaluatedTime> times_;
    project::StageSummary summary_;  ///< of the present stage file
    series::DeepWalls walls_;
    GradientReport gradients_;
    series::RunView view_;
    bool isThermoset_ = false;
    std::optional<kernel::KernelMesh> mesh_;
};

}  // namespace qnl::runs
