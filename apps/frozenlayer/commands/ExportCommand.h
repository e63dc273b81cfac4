#pragma once

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "export": the surface with its values, for other programs.
void AddExportCommand(Program& program);

}  // namespace qnl::commands
