#pragma once

#include <vector>

#include "base/Vector3.h"
#include "series/OpenedProject.h"
#include "series/SurfaceSeries.h"

namespace qnl::series {

/// The inward ray of every surface node, along the direction in which the evaluation looks: the normal,
/// smoothed in runs that smooth it.
struct SurfaceRays {
    std::vector<Vector3> inward;             ///< unit; zero for a node without a normal
    std::vector<double> wall;                ///< length in the solid, mm; 0 without a way inside
    std::vector<std::vector<int>> elements;  ///< pass elements, ascending ids
};

/// Traces all rays on all threads; the result does not depend on their number.
SurfaceRays TraceSurfaceRays(const OpenedProject& project, const Surface& surface);

/// The pass elements of one ray by depth, 1-based: entry 0 is unused. Depths count from the first element,
/// mm.
struct DepthProfile {
    std::vector<double> depths;
    std::vector<int> ids;

    int Count() const { return static_cast<int>(ids.size()) - 1; }
};

/// Sorts the pass elements of a ray by the depth of their reference points, as the evaluation does.
DepthProfile SortByDepth(const OpenedProject& project, const std::vector<int>& elements,
                         const Vector3& inward);

/// Merges elements at one depth and ends at the opposite wall, as the evaluation does. `temperatures`,
/// 1-based, receives the samples of the output time last read. Without samples for fewer than two elements.
DepthProfile MergeProfile(const OpenedProject& project, const DepthProfile& profile,
                          std::vector<double>& temperatures);

}  // namespace qnl::series
