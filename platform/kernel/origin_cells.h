#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kernel/face_topology.h"
#include "kernel/ray_hazards.h"

namespace qnl {

/// The cells at each place where a boundary node stands.
class OriginCells {
public:
    OriginCells() = default;
    OriginCells(const FaceTopology& topology, const std::vector<RayHazards::NearCell>& nearCells);

    struct Range {
        const int* first;
        const int* last;
        const int* begin() const { return first; }
        const int* end() const { return last; }
    };

    /// Cells that contain the place, when a boundary node stands exactly there; else an empty range. A cell
    /// may come twice, and a few cells may only be near.
    Range At(const FaceTopology& topology, const Point& place) const;

private:
    std::size_t FindEntry(const FaceTopology& topology, const Point& place) const;
    void HashNodes(const FaceTopology& topology);
    void GatherCells(const FaceTopology& topology, const std::vector<RayHazards::NearCell>& nearCells);

    std::vector<int> nodes_;            ///< boundary nodes, ascending
    std::vector<std::uint32_t> first_;  ///< per boundary node its place in cells_
    std::vector<int> cells_;
    std::vector<int> table_;  ///< open addressing over places: position in nodes_, or -1
};

}  // namespace qnl
