#pragma once

#include <string>

#include "commands/Subcommand.h"

namespace qnl::commands {

/// Evaluates a stage at all its output times as "run" does without options. Gives the exit code.
int RunStage(const std::string& stageFile);

/// "run": evaluates a stage of a project.
void AddRunCommand(Program& program);

}  // namespace qnl::commands
