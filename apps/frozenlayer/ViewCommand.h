#pragma once

#include <CLI/CLI.hpp>

namespace qnl {

/// "view": one self-contained page that shows results in a browser.
void AddViewCommand(CLI::App& app, int& exitCode);

/// Empty for a name that a page may have, else what is wrong with it.
std::string CheckPageName(const std::string& name);

}  // namespace qnl
