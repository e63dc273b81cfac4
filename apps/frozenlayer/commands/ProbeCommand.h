#pragma once

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "probe": the temperatures below surface nodes.
void AddProbeCommand(Program& program);

}  // namespace qnl::commands
