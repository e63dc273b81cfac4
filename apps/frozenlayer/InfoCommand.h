#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "info": tells what a file or a project folder holds.
void AddInfoCommand(CLI::App& app, int& exitCode);

}  // namespace qnl
