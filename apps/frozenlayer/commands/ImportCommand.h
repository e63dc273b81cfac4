#pragma once

#include <string>

#include "commands/Subcommand.h"
#include "imports/ImportRequest.h"

namespace qnl::commands {

/// Adds the files and options of an import, all but the project folder.
void AddImportOptions(Subcommand& command, imports::ImportRequest& request);

/// Reads the foreign files and writes the project folder; tells what was found on standard output and
/// warnings on standard error. Gives the stage file of the base time. Raises std::runtime_error.
std::string ImportProject(imports::ImportRequest request);

/// "import": makes a project folder from a mesh with results of another program.
void AddImportCommand(Program& program);

}  // namespace qnl::commands
