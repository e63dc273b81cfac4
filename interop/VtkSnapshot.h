#pragma once

#include <vtkDataObject.h>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// Mesh and arrays of what a reader gave. Blocks and pieces with volume cells become one mesh, joined at
/// points of equal coordinates unless they have names (then JoinBlocks does it), with a cell array "BlockId"
/// (0, 1, ...) when there are several; ghost cells
/// are left out. The time is the one that the data themselves carry. Raises ForeignProblem, in the name of
/// `file`, for data without cells.
ForeignSnapshot TakeSnapshot(const std::vector<vtkDataObject*>& parts, const std::string& file);

}  // namespace qnl::interop
