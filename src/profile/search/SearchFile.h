#pragma once

#include "context/FrozenLayerJob.h"

/// The search-result file m_szSurFile keeps the pass elements of all surface nodes for later runs on the
/// same mesh. It holds 32-bit signed integers, little-endian: version 1001, the number N of records, then
/// per record, in the order of the surface-node list, its count and its ids as they were found.

/// Writes the file from the m_nSurfaceNodes search records. Always gives 1: a failure is told and recorded
/// as a fault, and leaves an earlier file whole.
int WriteSearchResult(FrozenLayerJob& job);

/// Fills the m_nSurfaceNodes search records, which exist and are empty, from the file. Gives 1, or -1 with
/// m_bSearchDone set to 0 and all records empty: no file, another version or node count, or a damaged
/// file, which is recorded as a fault. Bytes after the last record are not looked at.
int ReadSearchResult(FrozenLayerJob& job);
