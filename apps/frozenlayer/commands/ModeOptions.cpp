#include "commands/ModeOptions.h"

namespace qnl::commands {

void AddModeOptions(Subcommand& command, ModeChoice& choice) {
    command.AddFlag(
        "--resolved", choice.resolved,
        "See the wall by the temperature field along the normal, each output time on its own (default)");
    command
        .AddFlag("--corrected", choice.corrected,
                 "See the wall by averages of faces and cells, each output time on its own")
        .Excludes("--resolved");
    command
        .AddFlag("--classic", choice.classic,
                 "By averages, with state carried from one output time to the next (see docs/modes.md)")
        .Excludes("--resolved")
        .Excludes("--corrected");
}

}  // namespace qnl::commands
