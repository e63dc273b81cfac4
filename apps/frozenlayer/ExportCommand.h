#pragma once

#include "Subcommand.h"

namespace qnl {

/// "export": the surface with its values, for other programs.
void AddExportCommand(Program& program);

}  // namespace qnl
