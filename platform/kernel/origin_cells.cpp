#include "kernel/origin_cells.h"

#include <cstring>

namespace qnl {
namespace {

// Adding zero makes both zeros the same.
std::uint64_t HashOf(const Point& place) {
    std::uint64_t hash = 0;
    for (const double coordinate : place) {
        const double value = coordinate + 0.0;
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        hash = (hash ^ bits) * 0x9E3779B97F4A7C15ULL;
        hash ^= hash >> 32;
    }
    return hash;
}

}  // namespace

OriginCells::OriginCells(const FaceTopology& topology, const std::vector<RayHazards::NearCell>& nearCells)
    : nodes_(BoundaryNodes(topology)) {
    HashNodes(topology);
    GatherCells(topology, nearCells);
}

std::size_t OriginCells::FindEntry(const FaceTopology& topology, const Point& place) const {
    const std::size_t mask = table_.size() - 1;
    std::size_t entry = static_cast<std::size_t>(HashOf(place)) & mask;
    while (table_[entry] >= 0) {
        const Point& known = topology.Place(nodes_[static_cast<std::size_t>(table_[entry])]);
        if (known[0] == place[0] && known[1] == place[1] && known[2] == place[2]) {
            break;
        }
        entry = (entry + 1) & mask;
    }
    return entry;
}

void OriginCells::HashNodes(const FaceTopology& topology) {
    std::size_t size = 16;
    while (size < 2 * nodes_.size()) {
        size *= 2;
    }
    table_.assign(size, -1);
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        const std::size_t entry = FindEntry(topology, topology.Place(nodes_[i]));
        if (table_[entry] < 0) {
            table_[entry] = static_cast<int>(i);
        }
    }
}

void OriginCells::GatherCells(const FaceTopology& topology,
                              const std::vector<RayHazards::NearCell>& nearCells) {
    std::vector<int> position(topology.nodes.size(), -1);
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        position[static_cast<std::size_t>(nodes_[i])] = static_cast<int>(i);
    }
    const auto forPairs = [&](auto take) {
        for (int cell = 0; cell < topology.Cells(); ++cell) {
            const int* corners = topology.Corners(cell);
            for (int c = 0; c < topology.Shape(cell).corners; ++c) {
                const int at = position[static_cast<std::size_t>(corners[c])];
                if (at >= 0) {
                    take(static_cast<std::size_t>(at), cell);
                }
            }
        }
        for (const RayHazards::NearCell& pair : nearCells) {
            take(static_cast<std::size_t>(position[static_cast<std::size_t>(pair.node)]), pair.cell);
        }
    };
    first_.assign(nodes_.size() + 2, 0);
    forPairs([&](std::size_t node, int) { ++first_[node + 2]; });
    for (std::size_t i = 2; i < first_.size(); ++i) {
        first_[i] += first_[i - 1];
    }
    cells_.resize(first_.back());
    forPairs([&](std::size_t node, int cell) { cells_[first_[node + 1]++] = cell; });
}

OriginCells::Range OriginCells::At(const FaceTopology& topology, const Point& place) const {
    if (nodes_.empty()) {
        return {nullptr, nullptr};
    }
    const int found = table_[FindEntry(topology, place)];
    if (found < 0) {
        return {nullptr, nullptr};
    }
    const auto node = static_cast<std::size_t>(found);
    return {cells_.data() + first_[node], cells_.data() + first_[node + 1]};
}

}  // namespace qnl
