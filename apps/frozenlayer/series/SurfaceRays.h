#pragma once

#include <vector>

#include "base/Vector3.h"
#include "series/OpenedProject.h"
#include "series/SurfaceResults.h"

namespace qnl::series {

/// The inward ray of every surface node, along the direction in which the evaluation looks: the normal,
/// smoothed in runs that smooth it.
struct SurfaceRays {
    std::vector<Vector3> inward;             ///< unit; zero for a node without a normal
    std::vector<double> wall;                ///< length in the solid, mm; 0 without a way inside
    std::vector<std::vector<int>> elements;  ///< pass elements, ascending numbers
};

/// Traces all rays on all threads; the result does not depend on their number.
SurfaceRays TraceSurfaceRays(const OpenedProject& project, const Surface& surface);

/// Points of one ray in ascending order of depth, 1-based: entry 0 is unused.
struct DepthProfile {
    double start = 0.0;          ///< depth of the first pass element, mm along the depth axis of the ray
    std::vector<double> depths;  ///< mm along the depth axis of the ray
    std::vector<int> elements;   ///< pass elements

    int Count() const { return static_cast<int>(elements.size()) - 1; }
    /// Depth below the first pass element, mm.
    double Below(std::size_t j) const { return depths[j] - start; }
    PassElement Element(std::size_t j) const { return PassElement(elements[j]); }
};

/// The pass elements of a ray by the depth of their reference points, as the evaluation sees them.
DepthProfile ElementsByDepth(const OpenedProject& project, const std::vector<int>& elements,
                             const Vector3& inward);

/// The samples of such a profile, as the evaluation sees them. `temperatures`, 1-based, receives theirs at
/// the output time last read. Without samples for fewer than two elements.
DepthProfile SamplesByDepth(const OpenedProject& project, const DepthProfile& profile,
                            std::vector<double>& temperatures);

}  // namespace qnl::series
