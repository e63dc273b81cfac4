#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "interop/SolidMesh.h"

namespace qnl::interop {

/// A face of the solid's boundary that has a value of its own.
struct BoundaryValue {
    std::array<int, 4> nodes;
    std::size_t corners;  ///< 3 or 4
    double value;         ///< not finite: none
};

/// Values at the nodes of a solid from values of its cells, in the solid's order; a value that is not finite
/// is missing, and a node with missing values only gets none.
///
/// In each cell the field is taken as linear, its gradient by least squares from the cells that share a node
/// with it and from the faces given on its boundary, weighted by 1/distance^2 (T. J. Barth and D. C.
/// Jespersen, The design and application of upwind schemes on unstructured meshes, AIAA paper 89-0366, 1989).
/// A node has the mean of what its cells tell, weighted by 1/distance, so that linear fields are met; inside
/// the solid it keeps within its cells' values.
///
/// Nodes of given faces have the mean of these, weighted by area. A face that repeats the value of a cell at
/// it (a wall without flux) counts only at nodes that have no other, and not for gradients.
std::vector<double> ReconstructAtNodes(const std::vector<double>& cellValues, const SolidMesh& solid,
                                       const std::vector<BoundaryValue>& boundary);

}  // namespace qnl::interop
