#pragma once

#include "Subcommand.h"

namespace qnl {

/// "info": tells what a file or a project folder holds.
void AddInfoCommand(Program& program);

}  // namespace qnl
