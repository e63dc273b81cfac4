#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"
#include "kernel/mesh/ZeroedArray.h"

namespace qnl::kernel {

/// Class of each node (0-based): 1 when it touches a part cell, else -1 when it touches a special cell, else
/// 0. `lonely` receives the number of nodes in no cell.
std::vector<int> NodeClasses(const MeshData& mesh, int& lonely);

/// Arrays by node label, of (largest label + 1) entries, 0 where no node has the label: they take memory for
/// the pages on which labels of nodes lie.
struct LabelArrays {
    ZeroedArray<int> isPart;  ///< 1 exactly for class 1
    ZeroedArray<int> nodeClass;
    ZeroedArray<int> nodeIndex;  ///< 1-based
};

/// Raises MeshFault when the largest label asks for more memory than there is.
LabelArrays ArraysByLabel(const MeshData& mesh, const std::vector<int>& classes);

/// 1-based by cell: 1 for runner and special cells.
std::vector<int> RunnerCells(const MeshData& mesh);

}  // namespace qnl::kernel
