#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"
#include "platform/MeshRecords.h"

namespace qnl::kernel {

/// Outward unit normal of every node from the boundary faces, 1-based by node (entry 0 is zero).
///
/// The sum over its face corners, by ascending face, of corner angle times unit normal of the corner (both
/// from the corner's two edges; a corner of zero area adds nothing), divided by its length; a sum shorter
/// than 1e-30 stays zero. Each component is then rounded to a multiple of 2^-34, ties to even: library
/// functions differ in the last bit, and a right angle between two walls must stay one.
std::vector<Point> NodeNormals(const std::vector<NodeRecord>& nodes, const std::vector<SurfaceRecord>& faces);

}  // namespace qnl::kernel
