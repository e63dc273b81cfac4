#include "kernel/recovery/NeighbourRows.h"

#include <omp.h>

namespace qnl::kernel {
namespace {

// Cells of each node, ascending.
struct CellRows {
    explicit CellRows(const RecordMesh& mesh) : start(static_cast<std::size_t>(mesh.nodeCount) + 2, 0) {
        ForCorners(mesh, [&](std::size_t node, int) { ++start[node + 1]; });
        for (std::size_t n = 1; n < start.size(); ++n) {
            start[n] += start[n - 1];
        }
        cells.resize(static_cast<std::size_t>(start.back()));
        std::vector<std::int64_t> next(start.begin(), start.end() - 1);
        ForCorners(mesh,
                   [&](std::size_t node, int cell) { cells[static_cast<std::size_t>(next[node]++)] = cell; });
    }

    template <class Visit>
    static void ForCorners(const RecordMesh& mesh, Visit visit) {
        for (int cell = 1; cell <= mesh.cellCount; ++cell) {
            for (int c = 0; c < mesh.CornerCount(cell); ++c) {
                visit(static_cast<std::size_t>(mesh.Corners(cell)[c]), cell);
            }
        }
    }

    std::vector<std::int64_t> start;
    std::vector<int> cells;
};

// The distinct nodes around one node; `lastSeenBy` marks those that are there already.
template <class Visit>
void ForNeighbours(const RecordMesh& mesh, const CellRows& rows, int node, std::vector<int>& lastSeenBy,
                   Visit visit) {
    const auto n = static_cast<std::size_t>(node);
    lastSeenBy[n] = node;
    for (auto i = rows.start[n]; i < rows.start[n + 1]; ++i) {
        const int cell = rows.cells[static_cast<std::size_t>(i)];
        for (int c = 0; c < mesh.CornerCount(cell); ++c) {
            const int other = mesh.Corners(cell)[c];
            int& mark = lastSeenBy[static_cast<std::size_t>(other)];
            if (mark != node) {
                mark = node;
                visit(other);
            }
        }
    }
}

// Calls work(node, marks) for every node, on all threads.
template <class Work>
void ForNodes(const RecordMesh& mesh, Work work) {
    std::vector<std::vector<int>> marks(static_cast<std::size_t>(omp_get_max_threads()),
                                        std::vector<int>(static_cast<std::size_t>(mesh.nodeCount) + 1, 0));
#pragma omp parallel for schedule(static)
    for (int node = 1; node <= mesh.nodeCount; ++node) {
        work(node, marks[static_cast<std::size_t>(omp_get_thread_num())]);
    }
}

}  // namespace

NeighbourRows::NeighbourRows(const RecordMesh& mesh)
    : start_(static_cast<std::size_t>(mesh.nodeCount) + 2, 0) {
    const CellRows rows(mesh);
    ForNodes(mesh, [&](int node, std::vector<int>& marks) {
        std::int64_t count = 0;
        ForNeighbours(mesh, rows, node, marks, [&](int) { ++count; });
        start_[static_cast<std::size_t>(node) + 1] = count;
    });
    for (std::size_t n = 1; n < start_.size(); ++n) {
        start_[n] += start_[n - 1];
    }
    nodes_.resize(static_cast<std::size_t>(start_.back()));
    ForNodes(mesh, [&](int node, std::vector<int>& marks) {
        int* next = nodes_.data() + start_[static_cast<std::size_t>(node)];
        ForNeighbours(mesh, rows, node, marks, [&](int other) { *next++ = other; });
    });
}

}  // namespace qnl::kernel
