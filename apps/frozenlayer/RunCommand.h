#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "run": evaluates a stage of a project.
void AddRunCommand(CLI::App& app, int& exitCode);

}  // namespace qnl
