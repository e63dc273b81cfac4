#pragma once

#include <string>
#include <vector>

#include "context/Mode.h"
#include "project/OutputTime.h"
#include "project/ProjectPaths.h"

namespace qnl::series {

/// One output time of a series, Windows-style paths.
struct SeriesTime {
    project::OutputTime time;
    std::string stageFile;
    std::string resultFile;
    double axis = 0.0;  ///< place on the axis of the series: s, or the position from 1
};

/// How a run looked at the wall.
struct RunView {
    Mode mode = Mode::Classic;
    bool smoothedNormals = false;  ///< along smoothed normals, not along those of the mesh
};

/// The files of the frozen-layer results of one stage of one run, in the order of time.
struct SeriesFiles {
    project::StageFile base;  ///< stage file of the base time; it need not be there
    std::vector<SeriesTime> times;
    bool realTimes =
        false;  ///< every stage file tells its time; else intermediate times come first, by index
    RunView view;
    std::vector<std::string> notes;  ///< what is stale or missing, a sentence without full stop each

    /// Whether the run saw the field inside the cells, not averages of faces and cells.
    bool SeesInsideCells() const { return RulesOf(view.mode).seesInsideCells; }
    const char* AxisName() const { return realTimes ? "Time" : "Output index"; }
    const char* AxisUnit() const { return realTimes ? "s" : ""; }
};

/// The paths that a user names a series by. One path: a project folder (its latest run, the first stage that
/// has results), or a result or stage file, which stands for all times of its series. Several: files of one
/// series, which stand for exactly those times.
struct SeriesSelection {
    std::vector<std::string> paths;
    bool onlyThese = false;  ///< a single file stands for its own time only
};

/// A series of these times, put into their order, which also decides their places on the axis.
SeriesFiles OrderSeriesFiles(project::StageFile base, std::vector<SeriesTime> times, const RunView& view);

/// The series that is named. What is stale or missing is recorded as warnings, too. Raises InputProblem, also
/// for results side by side of which one was made in another way, or from another mesh or material.
SeriesFiles FindSeriesFiles(const SeriesSelection& named);

/// What the help says of an argument that names a series.
inline constexpr const char* kSeriesHelp =
    "Frozen-layer result (.fzr, .pzr, .czr, .hczr, .wzr), which stands for all output times beside it; "
    "several "
    "of them for just those times; or a project folder: its latest run, the first stage with results";

}  // namespace qnl::series
