#pragma once

#include "Subcommand.h"

namespace qnl {

/// "demo": writes a project with a generated mesh and an analytic cooling history.
void AddDemoCommand(Program& program);

}  // namespace qnl
