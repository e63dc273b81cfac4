#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "export": the surface with its values, for other programs.
void AddExportCommand(CLI::App& app, int& exitCode);

}  // namespace qnl
