#include <array>
#include <cstdio>
#include <exception>

#include "DemoCommand.h"
#include "ExportCommand.h"
#include "ImportCommand.h"
#include "InfoCommand.h"
#include "ProbeCommand.h"
#include "RunCommand.h"
#include "ShowCommand.h"
#include "ViewCommand.h"
#include "host/HostSystem.h"

namespace {

using AddSubcommand = void (*)(qnl::Program& program);

constexpr std::array<AddSubcommand, 8> kSubcommands{
    qnl::AddRunCommand,  qnl::AddInfoCommand,   qnl::AddImportCommand, qnl::AddShowCommand,
    qnl::AddViewCommand, qnl::AddExportCommand, qnl::AddProbeCommand,  qnl::AddDemoCommand,
};

}  // namespace

int main(int argc, char** argv) try {
    qnl::UseUtf8Output();
    qnl::Program program;
    for (const AddSubcommand add : kSubcommands) {
        add(program);
    }
    return program.Perform(argc, argv);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "frozenlayer: %s\n", failure.what());
    return 1;
}
