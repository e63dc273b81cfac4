#pragma once

#include <cstdint>
#include <vector>

#include "kernel/mesh/RecordMesh.h"

namespace qnl::kernel {

/// For each node the nodes that share a cell with it, in compressed rows: 8 bytes a node and 4 bytes a node
/// and neighbour (about 70 bytes a node in a tetra mesh, 112 in a hexa mesh).
class NeighbourRows {
public:
    struct Row {
        const int* first;
        const int* last;
        const int* begin() const { return first; }
        const int* end() const { return last; }
    };

    /// The order within a row is that of the node's cells, ascending, then of their corners; it does not
    /// depend on the number of threads.
    explicit NeighbourRows(const RecordMesh& mesh);

    /// Neighbours of a node, both 1-based, without the node itself.
    Row Of(int node) const {
        const auto n = static_cast<std::size_t>(node);
        return {nodes_.data() + start_[n], nodes_.data() + start_[n + 1]};
    }
    int Nodes() const { return static_cast<int>(start_.size()) - 2; }
    std::size_t Bytes() const { return start_.size() * sizeof(std::int64_t) + nodes_.size() * sizeof(int); }

private:
    std::vector<std::int64_t> start_;  ///< by node; entry 0 is unused, the last is the end
    std::vector<int> nodes_;
};

}  // namespace qnl::kernel
