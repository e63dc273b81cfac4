#pragma once

#include <cstdint>
#include <vector>

#include "interop/ForeignSeries.h"
#include "interop/SolidMesh.h"

namespace qnl::interop {

/// One component of an array, one value per node of the solid mesh. Values of cells are carried to the nodes
/// as ReconstructAtNodes says, with the values that the boundary has in arrays of the same name.
std::vector<double> NodeValues(const ForeignArray& array, int component, const SolidMesh& solid,
                               const std::vector<ForeignFaces>& boundary);

/// Gives each value that is not finite the mean of the finite values of the cells around it, spreading from
/// neighbour to neighbour. Gives the number of values that cannot be reached.
std::int64_t FillMissing(std::vector<double>& values, const SolidMesh& solid);

}  // namespace qnl::interop
