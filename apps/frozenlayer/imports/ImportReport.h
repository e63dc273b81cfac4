#pragma once

#include <ostream>

#include "imports/ImportRequest.h"
#include "imports/ImportedCase.h"
#include "imports/ImportedProject.h"

namespace qnl::imports {

/// Tables of what an import found: cells by type, regions, arrays with their ranges, output times; then what
/// was computed and the command that comes next.
void PrintImport(const ImportRequest& request, const ImportedCase& imported, const ImportedMaterial& material,
                 const ImportedProject& project, std::ostream& out);

}  // namespace qnl::imports
