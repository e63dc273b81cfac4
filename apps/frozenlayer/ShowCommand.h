#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "show": import, run and view in one command.
void AddShowCommand(CLI::App& app, int& exitCode);

}  // namespace qnl
