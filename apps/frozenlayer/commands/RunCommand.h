#pragma once

#include <string>

#include "commands/ModeOptions.h"

namespace qnl::commands {

/// Evaluates a stage at all its output times as "run" does with `--view page`, a mode and no other option.
/// Gives whether every output time was evaluated and the page written.
bool RunStage(const std::string& stageFile, const std::string& page, const ModeChoice& mode);

/// "run": evaluates a stage of a project.
void AddRunCommand(Program& program);

}  // namespace qnl::commands
