#pragma once

#include <string>

#include "project/ProjectPaths.h"

namespace qnl::runs {

/// What follows for a run of this stage from a log of intermediate output times that is missing or
/// incomplete: one sentence that begins with its path. Empty for a complete log, and for a stage that wants
/// none.
std::string MarkerNote(const project::StageFile& base);

/// What follows for text stage results, flow or pack, from a complete log of intermediate output times, with
/// which their volume shrinkage is taken for the gas value: one sentence that begins with the path of the
/// first of them. Empty for a run that has none, or looks at no log.
std::string ShrinkageNote(const project::StageFile& base, int intermediateTimes, int analysisCode);

/// Whether a line of the evaluation is its own complaint of the missing log, which it makes as often as it
/// looks.
bool IsMarkerComplaint(const std::string& line);

}  // namespace qnl::runs
