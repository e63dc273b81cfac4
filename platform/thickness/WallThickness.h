#pragma once

#include <vector>

#include "kernel/rays/RayWalk.h"
#include "kernel/topology/BoundaryGraph.h"
#include "platform/MeshRecords.h"

namespace qnl::thickness {

/// Length inside the solid, mm, of the ray from each boundary node along its inward normal; 0 where no cell
/// is passed and for a node without a normal. Ordered as the graph's nodes; `nodes` and `normals` (outward)
/// are 1-based by node. Runs on all threads; the result does not depend on their number.
std::vector<double> InsideLengths(kernel::RayWalker& rays, const kernel::BoundaryGraph& boundary,
                                  const NodeRecord* nodes, const std::vector<kernel::Point>& normals);

/// Mean of the positive values among the neighbours of each boundary node, neighbours summed ascending; 0
/// where there is none.
std::vector<double> PositiveMeansAround(const kernel::BoundaryGraph& boundary,
                                        const std::vector<double>& values);

}  // namespace qnl::thickness
