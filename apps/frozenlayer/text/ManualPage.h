#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace qnl::text {

/// Lays help out as a manual page. The first line of an app's description is its purpose, the rest what
/// stands under DESCRIPTION; its footer ends the page.
class ManualPage : public CLI::Formatter {
public:
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_group(std::string, bool isPositional,
                           std::vector<const CLI::Option*> options) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const override;
};

}  // namespace qnl::text
