#pragma once

#include "Subcommand.h"

namespace qnl {

/// "probe": the temperatures below surface nodes.
void AddProbeCommand(Program& program);

}  // namespace qnl
