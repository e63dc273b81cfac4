#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kernel/rays/RayHazards.h"
#include "kernel/rays/RayTolerance.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

/// The cells at each place where a boundary node stands.
class OriginCells {
public:
    /// Must be assigned to before it is asked.
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
    // One line of memory tells all about a place.
    struct Slot {
        int node;  ///< -1 when free
        float sine;
        std::uint32_t first;
        std::uint32_t count;
    };

    std::size_t FindSlot(const FaceTopology& topology, const Point& place) const;
    void GatherCells(const FaceTopology& topology, const std::vector<RayHazards::NearCell>& nearCells);
    void MeasureNodes(const FaceTopology& topology, const RayHazards& hazards, const RayScale& scale);
    void HashNodes(const FaceTopology& topology);

    std::vector<int> nodes_;            ///< boundary nodes, ascending; only while the table is made
    std::vector<std::uint32_t> first_;  ///< per boundary node its place in cells_; only while it is made
    std::vector<float> sine_;           ///< per boundary node; only while it is made
    std::vector<int> cells_;
    std::vector<Slot> table_;  ///< open addressing over places
};

}  // namespace qnl::kernel
