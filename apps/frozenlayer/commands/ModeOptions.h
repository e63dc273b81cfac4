#pragma once

#include "commands/Subcommand.h"
#include "context/Mode.h"

namespace qnl::commands {

/// The mode that the command line asks for: the resolved one unless another is named.
struct ModeChoice {
    bool resolved = false;
    bool corrected = false;
    bool classic = false;

    Mode Value() const { return classic ? Mode::Classic : corrected ? Mode::Corrected : Mode::Resolved; }
};

/// One flag for each mode, of which at most one may be given.
void AddModeOptions(Subcommand& command, ModeChoice& choice);

}  // namespace qnl::commands
