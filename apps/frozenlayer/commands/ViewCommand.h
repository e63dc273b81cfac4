#pragma once

#include <string>

#include "commands/Subcommand.h"

namespace qnl::commands {

/// "view": one self-contained page that shows results in a browser.
void AddViewCommand(Program& program);

/// Empty for a name that a page may have, else what is wrong with it.
std::string CheckPageName(const std::string& name);

}  // namespace qnl::commands
