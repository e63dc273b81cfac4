#pragma once

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "demo": writes a project with a generated mesh and an analytic cooling history.
void AddDemoCommand(Program& program);

}  // namespace qnl::commands
