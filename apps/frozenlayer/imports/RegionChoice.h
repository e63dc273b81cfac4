#pragma once

#include "imports/ImportRequest.h"
#include "interop/ForeignSeries.h"

namespace qnl::imports {

/// Leaves of the cells those of the blocks that the request chooses: those of --part, all but those of
/// --ignore. A mesh of one block, or of blocks without names, stays as it is. Raises ForeignProblem, with the
/// list of the blocks, for several named ones without a choice, for a name that is not among them and when
/// none is left.
void KeepChosenBlocks(const ImportRequest& request, interop::ForeignSnapshot& snapshot);

}  // namespace qnl::imports
