#pragma once

#include <vector>

#include "kernel/boundary_graph.h"
#include "kernel/ray_walk.h"
#include "platform/MeshRecords.h"

namespace qnl {

/// Length inside the solid, mm, of the ray from each boundary node along its inward normal; 0 where no cell
/// is passed and for a node without a normal. Ordered as the graph's nodes; `nodes` and `normals` (outward)
/// are 1-based by node. Runs on all threads; the result does not depend on their number.
std::vector<double> InsideLengths(RayWalker& rays, const BoundaryGraph& boundary, const NodeRecord* nodes,
                                  const std::vector<Point>& normals);

/// Mean of the positive values among the neighbours of each boundary node, neighbours summed ascending; 0
/// where there is none.
std::vector<double> PositiveMeansAround(const BoundaryGraph& boundary, const std::vector<double>& values);

}  // namespace qnl
