#pragma once

#include <string>

#include "project/ProjectPaths.h"

namespace qnl::runs {

/// What follows for a run of this stage from a log of intermediate output times that is missing or
/// incomplete: one sentence that begins with its path. Empty for a complete log, and for a stage that wants
/// none.
std::string MarkerNote(const project::StageFile& base);

/// Whether a line of the evaluation is its own complaint of the missing log, which it makes as often as it
/// looks.
bool IsMarkerComplaint(const std::string& line);

}  // namespace qnl::runs
