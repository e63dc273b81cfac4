#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "platform/FieldKernel.h"
#include "runs/RunProgress.h"
#include "series/LoadedSeries.h"

namespace qnl::runs {

/// Reads the result files of the times that were evaluated. Gives false, with faults recorded, when one
/// cannot be read.
bool ReadResults(std::vector<EvaluatedTime>& times);

/// Prints, for every output time with a result, a table of its items as the result file holds them, then of
/// the frozen layers: name, unit, minimum, mean, maximum, number of nodes. Output times stand in the order of
/// their real times where all are known, else in the order of evaluation.
void PrintResultTables(const std::vector<EvaluatedTime>& times, std::ostream& out);

/// The series that a run has written. Every time has been evaluated and its result read; what is known of the
/// times moves into `known`.
series::SeriesFiles SeriesOfRun(const project::StageFile& base, std::vector<EvaluatedTime> times,
                                const series::RunView& view, series::KnownTimes& known);

/// Prints the paths under a heading.
void PrintWrittenFiles(const std::vector<std::string>& paths, std::ostream& out);

/// Prints a sentence about the nodes whose wall is deeper than the depth window; nothing without any.
void PrintDeepWalls(const series::DeepWalls& walls, std::ostream& out);

/// Prints a sentence about the nodes whose surroundings leave curvatures or slopes of the fields open, as of
/// the last output time; nothing without any, as in modes that recover no gradients.
void PrintOpenDirections(const GradientReport& report, std::ostream& out);

}  // namespace qnl::runs
