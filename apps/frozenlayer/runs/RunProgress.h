#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "context/RunOptions.h"
#include "project/OutputTime.h"
#include "series/WallDepth.h"
#include "text/ProgressBar.h"

namespace qnl::runs {

/// What became of one output time.
struct EvaluatedTime {
    project::OutputTime time;
    std::string stageFile;
    std::string resultFile;
    bool evaluated = false;
};

/// Follows a run: shows its progress and keeps what the report needs.
class RunProgress : public RunObserver {
public:
    /// `checkNodeIds`: a map of node ids in a stage file is misuse and recorded as a fault.
    RunProgress(text::ProgressBar& bar, bool checkNodeIds) : bar_(bar), checkNodeIds_(checkNodeIds) {}

    void TimeBegins(int index, int intermediateTimes, const char* stageFile) override;
    void NodesEvaluated(int done, int total) override;
    void TimeEnds(int index, bool evaluated, const FrozenLayerJob& job) override;
    void RunEnds(const FrozenLayerJob& job) override;

    const std::vector<EvaluatedTime>& Times() const { return times_; }
    const series::DeepWalls& Walls() const { return walls_; }

private:
    using Clock = std::chrono::steady_clock;

    std::string Title() const;
    void ShowShare(double shareOfTime);
    void CheckCompanions(const FrozenLayerJob& job) const;

    text::ProgressBar& bar_;
    bool checkNodeIds_;
    int timeCount_ = 1;
    Clock::time_point begin_;
    std::vector<EvaluatedTime> times_;
    series::DeepWalls walls_;
};

}  // namespace qnl::runs
