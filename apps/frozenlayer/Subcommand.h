#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace qnl {

/// What the help of a subcommand says, laid out by ManualPage.
struct SubcommandTexts {
    std::string name;
    std::string purpose;               ///< one line, for the list of subcommands
    std::string description;           ///< what it reads and writes
    std::vector<std::string> example;  ///< commands, one after the other, in a folder beside `examples`
};

/// Makes a subcommand of `app` whose help closes with the worked example and the exit codes. When it is
/// chosen, `exitCode` receives what `perform` gives; an exception out of it is told on standard error in one
/// sentence and gives 1.
CLI::App& AddSubcommand(CLI::App& app, int& exitCode, const SubcommandTexts& texts,
                        std::function<int()> perform);

}  // namespace qnl
