#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::mesh {

/// Has the kernel read the mesh file of the job. Gives the kernel's status: 1, or a negative value when
/// the mesh could not be read.
int ReadMesh(FrozenLayerJob& job);

/// Copies counts, box and sizes out of the kernel and borrows its arrays, after a successful read.
/// Gives 1, or -1 at the first array that is missing; what was taken before it stays.
int TakeOverMeshData(FrozenLayerJob& job);

/// Settles the thread count (the caller's wish, or else the parallel runtime's own), makes the counters
/// per thread, 0-based, and prepares the kernel's search slots.
void SetUpThreads(FrozenLayerJob& job);

}  // namespace qnl::mesh
