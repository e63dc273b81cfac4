#pragma once

#include <string>
#include <vector>

#include "commands/Subcommand.h"
#include "imports/ImportRequest.h"

namespace qnl::commands {

/// Adds the files and options of an import, all but the project folder.
void AddImportOptions(Subcommand& command, imports::ImportRequest& request);

/// What an import leaves.
struct ImportOutcome {
    std::string stageFile;              ///< of the base time
    std::vector<std::string> warnings;  ///< to be told last
};

/// Reads the foreign files and writes the project folder; tells what was found on standard output. Raises
/// std::runtime_error.
ImportOutcome ImportProject(imports::ImportRequest request);

/// Tells the warnings on standard error, behind what standard output has.
void PrintWarnings(const ImportOutcome& outcome);

/// "import": makes a project folder from a mesh with results of another program.
void AddImportCommand(Program& program);

}  // namespace qnl::commands
