#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Makes the normal arrays anew, zeroed, and lets the kernel fill in the outward normals of the boundary
/// nodes. Gives 1.
int ComputeSurfaceNormals(FrozenLayerJob& job);

/// Smooths three arrays by node, as runs with intermediate output times do with their normals.
void SmoothSurfaceNormals(CQNLOptKer& kernel, double* nx, double* ny, double* nz);

}  // namespace qnl::frozen
