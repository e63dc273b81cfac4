#include "kernel/rays/OriginCells.h"

#include <algorithm>
#include <cstring>

namespace qnl::kernel {
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

// The sine that one cell asks for (see MeasureNodes), above 1 for cells that are no tetras or meet the node
// twice.
double SineFor(const FaceTopology& topology, int cell, int node, const RayScale& scale) {
    constexpr double kNever = 2.0;
    const int* corners = topology.Corners(cell);
    if (!topology.IsTetra(cell) || std::count(corners, corners + 4, node) != 1) {
        return kNever;
    }
    const auto corner = static_cast<std::size_t>(std::find(corners, corners + 4, node) - corners);
    const Tetra tetra{topology.Place(corners[0]), topology.Place(corners[1]), topology.Place(corners[2]),
                      topology.Place(corners[3])};
    const double sixVolumes = SixVolumes(tetra);
    const auto& face = kTetraFaces[kFaceOpposite[corner]];
    const double twiceArea =
        Length(Cross(Minus(tetra[face[1]], tetra[face[0]]), Minus(tetra[face[2]], tetra[face[0]])));
    if (!(sixVolumes > 0.0)) {
        return kNever;
    }
    const double overshoot = PlaneOvershoot(tetra, sixVolumes, scale.epsilon, 0.1 * scale.passLength);
    return std::max(2.0 * overshoot / scale.passLength, 1.5 * scale.reach * twiceArea / sixVolumes);
}

}  // namespace

OriginCells::OriginCells(const FaceTopology& topology, const RayHazards& hazards, const RayScale& scale)
    : nodes_(BoundaryNodes(topology)) {
    GatherCells(topology, hazards.nearCells);
    MeasureNodes(topology, hazards, scale);
    HashNodes(topology);
}

std::size_t OriginCells::FindSlot(const FaceTopology& topology, const Point& place) const {
    const std::size_t mask = table_.size() - 1;
    std::size_t slot = static_cast<std::size_t>(HashOf(place)) & mask;
    while (table_[slot].node >= 0) {
        const Point& known = topology.Place(table_[slot].node);
        if (known[0] == place[0] && known[1] == place[1] && known[2] == place[2]) {
            break;
        }
        slot = (slot + 1) & mask;
    }
    return slot;
}

void OriginCells::HashNodes(const FaceTopology& topology) {
    std::size_t size = 16;
    while (size < 2 * nodes_.size()) {
        size *= 2;
    }
    table_.assign(size, {-1, 0.0F, 0});
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        Slot& slot = table_[FindSlot(topology, topology.Place(nodes_[i]))];
        if (slot.node < 0) {
            slot = {nodes_[i], sine_[i], list_[i]};
        }
    }
    nodes_ = {};
    list_ = {};
    sine_ = {};
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
    std::vector<int> lengths(nodes_.size(), 0);
    forPairs([&](std::size_t node, int) { ++lengths[node]; });
    list_.assign(1, 0);
    for (const int length : lengths) {
        list_.push_back(list_.back() + 1 + static_cast<std::size_t>(length));
    }
    cells_.assign(list_.back(), 0);
    forPairs([&](std::size_t node, int cell) {
        int& length = cells_[list_[node]];
        cells_[list_[node] + static_cast<std::size_t>(++length)] = cell;
    });
}

// At depth t a ray that stays off a cell by the sine is at least t times the sine away from it, and moving
// the cell's planes brings it no nearer than the overshoot. Up to where the ray is farther than the reach
// from all faces at the node, everything within reach must belong to cells of the node: so their opposite
// faces must be farther away than that.
void OriginCells::MeasureNodes(const FaceTopology& topology, const RayHazards& hazards,
                               const RayScale& scale) {
    constexpr float kNever = 2.0F;
    sine_.assign(nodes_.size(), 0.0F);
    const int count = static_cast<int>(nodes_.size());
#pragma omp parallel for schedule(static)
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        double sine = 0.0;
        for (std::size_t c = list_[at] + 1; c < list_[at + 1]; ++c) {
            sine = std::max(sine, SineFor(topology, cells_[c], nodes_[at], scale));
        }
        sine_[at] = sine < 1.0 ? static_cast<float>(1.001 * sine) : kNever;
    }
    const auto rule = [&](int node) {
        const auto found = std::lower_bound(nodes_.begin(), nodes_.end(), node);
        if (found != nodes_.end() && *found == node) {
            sine_[static_cast<std::size_t>(found - nodes_.begin())] = kNever;
        }
    };
    for (const RayHazards::NearCell& pair : hazards.nearCells) {
        rule(pair.node);
    }
    for (const int cell : hazards.cells) {
        std::for_each(topology.Corners(cell), topology.Neighbours(cell), rule);
    }
}

OriginCells::Entry OriginCells::At(const FaceTopology& topology, const Point& place) const {
    const Slot& slot = table_[FindSlot(topology, place)];
    if (slot.node < 0) {
        return {slot.node, slot.sine, nullptr, nullptr};
    }
    const int* list = cells_.data() + slot.list;
    return {slot.node, slot.sine, list + 1, list + 1 + *list};
}

}  // namespace qnl::kernel
