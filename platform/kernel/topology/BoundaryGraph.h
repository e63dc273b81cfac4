#pragma once

#include <cstdint>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// The nodes of the boundary faces and, for each, the nodes that share an edge of such a face with it.
/// Boundary nodes are numbered from 0 by ascending node index.
class BoundaryGraph {
public:
    BoundaryGraph() = default;
    /// `nodeCount` bounds the node indices of the faces.
    BoundaryGraph(const std::vector<BoundaryFace>& faces, int nodeCount);

    /// Node indices (0-based), ascending.
    const std::vector<int>& Nodes() const { return nodes_; }
    /// Neighbours of a boundary node as boundary numbers, ascending.
    const int* NeighboursBegin(std::size_t i) const { return neighbours_.data() + first_[i]; }
    const int* NeighboursEnd(std::size_t i) const { return neighbours_.data() + first_[i + 1]; }

private:
    std::vector<int> nodes_;
    std::vector<std::int64_t> first_;
    std::vector<int> neighbours_;
};

/// Mean length of the distinct edges of the boundary faces, mm, summed in ascending order of (smaller,
/// larger) node index; 0 without edges.
double MeanEdgeLength(const BoundaryGraph& graph, const std::vector<Point>& points);

/// `sweeps` times, every boundary node takes the mean of its own value and those of its neighbours, all from
/// before the sweep: own value first, then the neighbours ascending. `values` is 0-based by node index. The
/// result does not depend on the number of threads.
void SmoothOverBoundary(const BoundaryGraph& graph, double* values, int sweeps);

}  // namespace qnl::kernel
