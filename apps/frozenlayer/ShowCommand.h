#pragma once

#include "Subcommand.h"

namespace qnl {

/// "show": import, run and view in one command.
void AddShowCommand(Program& program);

}  // namespace qnl
