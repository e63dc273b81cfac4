#pragma once

#include <cstdint>

#include "demo/DemoPart.h"

namespace qnl::demo {

/// The tetra mesh of a planned part: every block is cut into six tetras around its diagonal from the lowest
/// to the highest corner, so that neighbours agree on the diagonals between them. Nodes inside are moved by
/// up to 0.15 block edges, so that rays do not all run along edges; the surface stays as planned. All cells
/// are part, labels are left to the index. The same plan gives the same mesh on every system.
kernel::MeshData MeshDemoPart(const DemoPart& part);

/// MeshDemoPart of PlanDemoPart.
kernel::MeshData MakeDemoMesh(DemoShape shape, int cells);

/// Puts the cells and nodes of a tetra mesh without labels in a random order, the way meshers leave them.
void ShuffleTetras(kernel::MeshData& mesh, std::uint32_t seed);

}  // namespace qnl::demo
