#pragma once

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "info": tells what a file or a project folder holds.
void AddInfoCommand(Program& program);

}  // namespace qnl::commands
