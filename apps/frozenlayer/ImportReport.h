#pragma once

#include <ostream>

#include "ImportRequest.h"
#include "ImportedCase.h"
#include "ImportedProject.h"

namespace qnl {

/// Tables of what an import found: cells by type, regions, arrays with their ranges, output times; then what
/// was computed and the command that comes next.
void PrintImport(const ImportRequest& request, const ImportedCase& imported, const ImportedMaterial& material,
                 const ImportedProject& project, std::ostream& out);

}  // namespace qnl
