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
    struct Slot {
        int node;  ///< -1 when free
        float sine;
        std::size_t list;  ///< of its cells, in cells_
    };

    std::size_t FindSlot(const FaceTopology& topology, const Point& place) const;
    void GatherCells(const FaceTopology& topology, const std::vector<RayHazards::NearCell>& nearCells);
    void MeasureNodes(const FaceTopology& topology, const RayHazards& hazards, const RayScale& scale);
    void HashNodes(const FaceTopology& topology);

    std::vector<int> nodes_;         ///< boundary nodes, ascending; only while the table is made
    std::vector<std::size_t> list_;  ///< per boundary node where its list begins; only while it is made
    std::vector<float> sine_;        ///< per boundary node; only while it is made
    std::vector<int> cells_;         ///< lists end to end, each behind its length
    std::vector<Slot> table_;        ///< open addressing over places
};

}  // namespace qnl::kernel
