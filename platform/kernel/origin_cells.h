#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kernel/face_topology.h"
#include "kernel/ray_hazards.h"
#include "kernel/ray_tolerance.h"

namespace qnl {

/// The cells at each place where a boundary node stands.
class OriginCells {
public:
    OriginCells() = default;
    OriginCells(const FaceTopology& topology, const RayHazards& hazards, const RayScale& scale);

    struct Entry {
        int node;  ///< -1 when no boundary node stands exactly there
        /// When a ray from the node leaves one of its cells through the opposite face, and stays off the
        /// planes of all its cells by at least this sine, the other cells are neither passed nor do they
        /// prolong the way inside. Above 1 where that is never so.
        float sine;
        const int* first;  ///< cells that contain the place; one may come twice, a few may only be near
        const int* last;
        const int* begin() const { return first; }
        const int* end() const { return last; }
    };

    Entry At(const FaceTopology& topology, const Point& place) const;

private:
    std::size_t FindEntry(const FaceTopology& topology, const Point& place) const;
    void HashNodes(const FaceTopology& topology);
    void GatherCells(const FaceTopology& topology, const std::vector<RayHazards::NearCell>& nearCells);
    void MeasureNodes(const FaceTopology& topology, const RayHazards& hazards, const RayScale& scale);

    std::vector<int> nodes_;            ///< boundary nodes, ascending
    std::vector<std::uint32_t> first_;  ///< per boundary node its place in cells_
    std::vector<int> cells_;
    std::vector<float> sine_;
    std::vector<int> table_;  ///< open addressing over places: position in nodes_, or -1
};

}  // namespace qnl
