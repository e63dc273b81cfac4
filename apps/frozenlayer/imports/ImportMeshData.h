#pragma once

#include <string>

#include "imports/ImportedCase.h"

namespace qnl::imports {

/// Takes over the labels, regions and geometric tolerance of the mesh of an import, from the first snapshot.
/// Raises ForeignProblem for a region array or region that is not there.
void AddMeshData(const ImportRequest& request, const interop::ForeignSnapshot& snapshot,
                 ImportedCase& imported);

}  // namespace qnl::imports
