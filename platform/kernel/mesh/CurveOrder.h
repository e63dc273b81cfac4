#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// The cells of a mesh along a space-filling curve through their middles: entry i is the 0-based file
/// number of the i-th cell on the curve. Cells that stand together in space stand together in the result,
/// whatever the order of the file; cells in the same place keep the file's order. Independent of the number
/// of threads. Cost linear in the number of cells.
std::vector<int> CurveOrder(const MeshData& mesh);

}  // namespace qnl::kernel
