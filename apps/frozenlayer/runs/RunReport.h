#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "runs/RunProgress.h"

namespace qnl::runs {

/// Prints, for every output time with a result, a table of its items as the result file holds them: name,
/// unit, minimum, mean, maximum, number of nodes. Output times stand in the order of their real times
/// where all are known, else in the order of evaluation. Gives false when a result file cannot be read.
bool PrintResultTables(std::vector<EvaluatedTime> times, std::ostream& out);

/// Prints the paths under a heading.
void PrintWrittenFiles(const std::vector<std::string>& paths, std::ostream& out);

/// Prints a sentence about the nodes whose wall is deeper than the depth window; nothing without any.
void PrintDeepWalls(const series::DeepWalls& walls, std::ostream& out);

}  // namespace qnl::runs
