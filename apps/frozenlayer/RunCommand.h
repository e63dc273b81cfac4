#pragma once

#include <string>

#include "Subcommand.h"

namespace qnl {

/// Evaluates a stage at all its output times as "run" does without options. Gives the exit code.
int RunStage(const std::string& stageFile);

/// "run": evaluates a stage of a project.
void AddRunCommand(Program& program);

}  // namespace qnl
