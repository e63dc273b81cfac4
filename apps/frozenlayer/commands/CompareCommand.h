#pragma once

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "compare": the differences of two results of one mesh.
void AddCompareCommand(Program& program);

}  // namespace qnl::commands
