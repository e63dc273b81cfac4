#include <array>
#include <cstdio>
#include <exception>
#include <optional>

#include "commands/CompareCommand.h"
#include "commands/DemoCommand.h"
#include "commands/ExportCommand.h"
#include "commands/ImportCommand.h"
#include "commands/InfoCommand.h"
#include "commands/ProbeCommand.h"
#include "commands/RunCommand.h"
#include "commands/ShowCommand.h"
#include "commands/ViewCommand.h"
#include "host/HostSystem.h"
#include "host/Interrupts.h"
#include "platform/HostThreads.h"

namespace {

using AddSubcommand = void (*)(qnl::commands::Program& program);

constexpr std::array<AddSubcommand, 9> kSubcommands{
    qnl::commands::AddRunCommand,   qnl::commands::AddInfoCommand,    qnl::commands::AddImportCommand,
    qnl::commands::AddShowCommand,  qnl::commands::AddViewCommand,    qnl::commands::AddExportCommand,
    qnl::commands::AddProbeCommand, qnl::commands::AddCompareCommand, qnl::commands::AddDemoCommand,
};

}  // namespace

int main(int argc, char** argv) try {
    qnl::host::NoteInterrupts();
    qnl::host::UseUtf8Output();
    qnl::commands::Program program;
    for (const AddSubcommand add : kSubcommands) {
        add(program);
    }
    if (const std::optional<int> end = program.Choose(argc, argv)) {
        return *end;
    }
    qnl::LetIdleThreadsSleep(argv);
    return program.Perform();
} catch (const std::exception& failure) {
    std::fprintf(stderr, "frozenlayer: %s\n", failure.what());
    return 1;
}
