#include "kernel/recovery/NeighbourRows.h"

#include <omp.h>

#include <utility>

namespace qnl::kernel {
namespace {

// Calls visit(node, cell) for all corners of all cells, by ascending cell.
template <class Visit>
void ForCorners(const RecordMesh& mesh, Visit visit) {
    for (int cell = 1; cell <= mesh.cellCount; ++cell) {
        for (int c = 0; c < mesh.CornerCount(cell); ++c) {
            visit(static_cast<std::size_t>(mesh.Corners(cell)[c]), cell);
        }
    }
}

// Counts, each behind its node, become the starts of the rows.
void AddUp(std::vector<std::int64_t>& start) {
    for (std::size_t n = 1; n < start.size(); ++n) {
        start[n] += start[n - 1];
    }
}

// Calls work(node, neighbour) once for every neighbour of every node, on all threads.
template <class Work>
void ForEachOnce(const NeighbourRows& rows, Work work) {
    std::vector<std::vector<int>> marks(static_cast<std::size_t>(omp_get_max_threads()),
                                        std::vector<int>(static_cast<std::size_t>(rows.Nodes()) + 1, 0));
#pragma omp parallel for schedule(static)
    for (int node = 1; node <= rows.Nodes(); ++node) {
        std::vector<int>& lastSeenBy = marks[static_cast<std::size_t>(omp_get_thread_num())];
        lastSeenBy[static_cast<std::size_t>(node)] = node;
        rows.ForNeighbours(node, [&](int other) {
            if (std::exchange(lastSeenBy[static_cast<std::size_t>(other)], node) != node) {
                work(static_cast<std::size_t>(node), other);
            }
        });
    }
}

}  // namespace

NeighbourRows::NeighbourRows(const RecordMesh& mesh) : mesh_(mesh) {
    KeepCells();
    KeepNodes();
}

void NeighbourRows::KeepCells() {
    start_.assign(static_cast<std::size_t>(mesh_.nodeCount) + 2, 0);
    ForCorners(mesh_, [&](std::size_t node, int) { ++start_[node + 1]; });
    AddUp(start_);
    entries_.resize(static_cast<std::size_t>(start_.back()));
    std::vector<std::int64_t> next(start_.begin(), start_.end() - 1);
    ForCorners(mesh_,
               [&](std::size_t node, int cell) { entries_[static_cast<std::size_t>(next[node]++)] = cell; });
}

// In the place of the cells, if that is less.
void NeighbourRows::KeepNodes() {
    std::vector<std::int64_t> start(start_.size(), 0);
    ForEachOnce(*this, [&](std::size_t node, int) { ++start[node + 1]; });
    AddUp(start);
    if (start.back() >= start_.back()) {
        return;
    }
    std::vector<int> nodes(static_cast<std::size_t>(start.back()));
    std::vector<std::int64_t> next(start.begin(), start.end() - 1);
    ForEachOnce(*this,
                [&](std::size_t node, int other) { nodes[static_cast<std::size_t>(next[node]++)] = other; });
    start_ = std::move(start);
    entries_ = std::move(nodes);
    ofCells_ = false;
}

}  // namespace qnl::kernel
