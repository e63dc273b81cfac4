#pragma once

#include <cstdint>
#include <vector>

#include "kernel/mesh/RecordMesh.h"

namespace qnl::kernel {

/// For each node the nodes that share a cell with it. Kept in compressed rows are these nodes or the node's
/// cells, whichever are fewer in the mesh: 8 bytes a node and 4 bytes an entry, about 60 bytes a node in a
/// tetra mesh (nodes), 56 in a wedge and 40 in a hexa mesh (cells).
class NeighbourRows {
public:
    /// The mesh is borrowed.
    explicit NeighbourRows(const RecordMesh& mesh);

    /// Calls visit(other) for all neighbours of a node, both 1-based; nodes may come more than once, and the
    /// node itself may be among them. First visits come in the order of the node's cells, ascending, then of
    /// their corners, whatever is kept and whatever the number of threads.
    template <class Visit>
    void ForNeighbours(int node, Visit visit) const {
        ForNeighbours(
            node, [](int) { return true; }, visit);
    }

    /// The same but for the nodes of cells, 1-based, that `opens` refuses: those whose nodes are known. Rows
    /// of nodes ask for none.
    template <class Opens, class Visit>
    void ForNeighbours(int node, Opens opens, Visit visit) const {
        const auto n = static_cast<std::size_t>(node);
        for (auto i = start_[n]; i < start_[n + 1]; ++i) {
            const int entry = entries_[static_cast<std::size_t>(i)];
            if (!ofCells_) {
                visit(entry);
                continue;
            }
            const int corners = opens(entry) ? mesh_.CornerCount(entry) : 0;
            for (int c = 0; c < corners; ++c) {
                visit(mesh_.Corners(entry)[c]);
            }
        }
    }
    int Nodes() const { return mesh_.nodeCount; }
    std::size_t Bytes() const { return start_.size() * sizeof(std::int64_t) + entries_.size() * sizeof(int); }

private:
    void KeepCells();
    void KeepNodes();

    RecordMesh mesh_;
    bool ofCells_ = true;
    std::vector<std::int64_t> start_;  ///< by node; entry 0 is unused, the last is the end
    std::vector<int> entries_;
};

}  // namespace qnl::kernel
