#pragma once

#include <optional>
#include <vector>

#include "context/Mode.h"
#include "context/RunStep.h"

struct FrozenLayerJob;

namespace qnl {

/// Told of the progress of a run, always on the main thread.
class RunObserver {
public:
    virtual ~RunObserver() = default;
    /// A step of the run begins, or is through. A step that does not apply to a run is not told.
    virtual void StepBegins(RunStep /*step*/, const FrozenLayerJob& /*job*/) {}
    virtual void StepEnds(RunStep /*step*/, const FrozenLayerJob& /*job*/) {}
    /// One output time begins: its index (0 is the base time), the number of intermediate times and the
    /// stage file it is read from.
    virtual void TimeBegins(int /*index*/, int /*intermediateTimes*/, const char* /*stageFile*/) {}
    /// `done` of `total` surface nodes of this output time are evaluated.
    virtual void NodesEvaluated(int /*done*/, int /*total*/) {}
    /// The output time is through; `evaluated` is false when its stage file could not be loaded.
    virtual void TimeEnds(int /*index*/, bool /*evaluated*/, const FrozenLayerJob& /*job*/) {}
    /// All output times are through and the job still holds its arrays.
    virtual void RunEnds(const FrozenLayerJob& /*job*/) {}
};

/// The largest thread count that a caller may ask for.
inline constexpr int kMostThreads = 4096;

/// What a caller may ask of a run beyond the launcher's words.
struct RunOptions {
    int logLevel = 0;
    bool fibreProbe = false;
    int threads = 0;                       ///< 0: the parallel runtime's own count
    std::optional<int> intermediateTimes;  ///< wins over the five-word rule
    Mode mode = Mode::Classic;
    std::vector<int> keptTimes;       ///< indices of output times that are passed over, their results kept;
                                      ///< none in modes that carry state from one to the next
    RunObserver* observer = nullptr;  ///< borrowed, may be null

    const ModeRules& Rules() const { return RulesOf(mode); }
};

}  // namespace qnl
