#pragma once

#include <vector>

#include "kernel/boxes/BoxHierarchy.h"
#include "kernel/rays/RayGeometry.h"
#include "kernel/rays/RayTolerance.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

/// Cells that a walk from neighbour to neighbour could miss.
struct RayHazards {
    struct NearCell {
        int node;
        int cell;
    };

    /// Cells that stand on the same side of a common face, contain a piece turned inside out, neighbour
    /// such a cell, or are so flat that moving their planes by the distance tolerance carries their corners
    /// farther than the reach. Ascending.
    std::vector<int> cells;
    std::vector<Box> boxes;  ///< one per entry of `cells`, around all that moving its planes can reach
    /// Boundary nodes and the cells that contain them without having them as corners (bodies that touch or
    /// overlap), ascending by node, then cell. A few pairs may only be near.
    std::vector<NearCell> nearCells;
};

/// Independent of the number of threads. Cost linear in the number of cells for meshes whose boundary
/// nodes are spread over space.
RayHazards FindRayHazards(const FaceTopology& topology, const RayScale& scale);

/// How far a point of a tetra can get when its planes are moved outward by `epsilon`: an upper bound, coarse
/// when that is no more than `enough`. `sixVolumes` is positive.
double PlaneOvershoot(const Tetra& tetra, double sixVolumes, double epsilon, double enough);

/// Nodes of the boundary faces, ascending.
std::vector<int> BoundaryNodes(const FaceTopology& topology);

}  // namespace qnl::kernel
