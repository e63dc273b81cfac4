#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace qnl {

/// Makes a subcommand of `app` whose help closes with the worked example (one line) and the exit codes.
/// When it is chosen, `exitCode` receives what `perform` gives; an exception out of it is told on standard
/// error in one sentence and gives 1.
CLI::App& AddSubcommand(CLI::App& app, int& exitCode, const std::string& name, const std::string& purpose,
                        const std::string& example, std::function<int()> perform);

/// Help of an option, broken into lines beneath each other.
std::string HelpText(const std::string& text);

}  // namespace qnl
