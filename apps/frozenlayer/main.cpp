#include <CLI/CLI.hpp>
#include <array>

#include "DemoCommand.h"
#include "ExportCommand.h"
#include "ImportCommand.h"
#include "InfoCommand.h"
#include "ProbeCommand.h"
#include "RunCommand.h"
#include "ShowCommand.h"
#include "Terminal.h"
#include "ViewCommand.h"

namespace {

using AddSubcommand = void (*)(CLI::App& app, int& exitCode);

constexpr std::array<AddSubcommand, 8> kSubcommands{
    qnl::AddRunCommand,  qnl::AddInfoCommand,   qnl::AddImportCommand, qnl::AddShowCommand,
    qnl::AddViewCommand, qnl::AddExportCommand, qnl::AddProbeCommand,  qnl::AddDemoCommand,
};

}  // namespace

int main(int argc, char** argv) {
    qnl::UseUtf8Output();
    CLI::App app("frozenlayer: the frozen layer of injection-moulded parts, from mesh and stage results",
                 "frozenlayer");
    app.set_version_flag("--version", "frozenlayer " QNL_VERSION);
    app.require_subcommand(1);
    app.footer(
        "Example:\n"
        "  frozenlayer run examples/ribbed-cover\n"
        "\n"
        "frozenlayer SUBCOMMAND --help tells more about each. Exit codes: 0 success, 1 otherwise.");
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
