#include <CLI/CLI.hpp>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "DemoCommand.h"
#include "ExportCommand.h"
#include "ImportCommand.h"
#include "InfoCommand.h"
#include "ManualPage.h"
#include "ProbeCommand.h"
#include "RunCommand.h"
#include "ShowCommand.h"
#include "host/HostSystem.h"
#include "ViewCommand.h"

namespace {

using AddSubcommand = void (*)(CLI::App& app, int& exitCode);

constexpr std::array<AddSubcommand, 8> kSubcommands{
    qnl::AddRunCommand,  qnl::AddInfoCommand,   qnl::AddImportCommand, qnl::AddShowCommand,
    qnl::AddViewCommand, qnl::AddExportCommand, qnl::AddProbeCommand,  qnl::AddDemoCommand,
};

/// Names the word that is no subcommand, which the parser leaves over.
std::string DescribeFailure(const CLI::App* app, const CLI::Error& failure) {
    const std::vector<std::string> words = app->remaining();
    const bool unknown = app->get_parent() == nullptr && app->get_subcommands().empty() && !words.empty();
    const std::string reason = unknown ? "\"" + words.front() + "\" is no subcommand" : failure.what();
    return "frozenlayer: " + reason + "; run it with --help to see what it takes\n";
}

}  // namespace

int main(int argc, char** argv) {
    qnl::UseUtf8Output();
    CLI::App app(
        "the frozen layer of injection-moulded parts, from mesh and stage results\n"
        "Evaluates how far the frozen skin has grown into the wall of a part, from a project folder or from "
        "the "
        "files of another program, and shows the results.",
        "frozenlayer");
    app.formatter(std::make_shared<qnl::ManualPage>());
    app.set_version_flag("--version", "frozenlayer " QNL_VERSION, "Print the version");
    app.set_help_flag("-h,--help", "Print this help");
    app.require_subcommand(1);
    app.failure_message(DescribeFailure);
    app.footer(
        "EXAMPLE\n"
        "  frozenlayer run examples/ribbed-cover\n"
        "\n"
        "EXIT STATUS\n"
        "  0 success, 1 otherwise. frozenlayer SUBCOMMAND --help tells more about each.");
    int exitCode = 0;
    for (const AddSubcommand add : kSubcommands) {
        add(app, exitCode);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return app.exit(end) == 0 ? 0 : 1;
    }
    return exitCode;
}
