#pragma once

#include <string>
#include <vector>

#include "context/RunOptions.h"

namespace qnl::launcher {

/// What the command line of the console program asks for.
struct LauncherWords {
    std::vector<std::string> words;  ///< word 0 is the stage result file
    RunOptions options;
    bool help = false;
    bool version = false;
    std::string usageError;  ///< not empty: what is wrong, in one sentence
};

/// Splits the process arguments. Arguments that begin with "--" are options; of the others, argument 0 is
/// word 0 when it names a stage result itself and the program's own path otherwise.
LauncherWords ParseLauncherWords(int argc, const char* const* argv);

}  // namespace qnl::launcher
