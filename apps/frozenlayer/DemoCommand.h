#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "demo": writes a project with a generated mesh and an analytic cooling history.
void AddDemoCommand(CLI::App& app, int& exitCode);

}  // namespace qnl
