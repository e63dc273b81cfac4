#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "probe": the temperatures below surface nodes.
void AddProbeCommand(CLI::App& app, int& exitCode);

}  // namespace qnl
