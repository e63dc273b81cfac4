#pragma once

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "show": import, run and view in one command.
void AddShowCommand(Program& program);

}  // namespace qnl::commands
