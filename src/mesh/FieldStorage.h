#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::mesh {

/// Creates the arrays of input values and their extensions, and, for flow results, the tree of kept
/// velocity nodes. Arrays have count + 1 entries; one that exists is kept, and all are zeroed. Gives 1.
/// A count that cannot be allocated raises std::bad_alloc.
int NewDataStorage(FrozenLayerJob& job);

/// The same, told by no log line.
void PrepareDataStorage(FrozenLayerJob& job);

/// Creates the computed node arrays that the presence flags ask for, m_nNodes + 1 entries each; one that
/// exists is kept, and all are zeroed. Gives 1. Raises std::bad_alloc as above.
int NewFrozenStorage(FrozenLayerJob& job);

/// Creates, zeroed, the computed node arrays that the presence flags ask for by now and that are still
/// missing; others are left alone.
void EnsureComputedArrays(FrozenLayerJob& job);

/// Releases the computed arrays, the output item table and the surface-node list. Gives 1.
int FreeMemory(FrozenLayerJob& job);

}  // namespace qnl::mesh
