#pragma once

#include <vector>

#include "series/OpenedProject.h"
#include "series/SurfaceRays.h"
#include "series/SurfaceResults.h"
#include "series/WallReadings.h"

namespace qnl::series {

/// Temperature over depth at some surface nodes, samples node after node.
struct DepthProfiles {
    std::vector<int> nodes;                        ///< surface nodes, each with a profile
    std::vector<int> counts;                       ///< samples of each
    std::vector<float> depths;                     ///< mm from the surface, or below the first sample
    std::vector<std::vector<float>> temperatures;  ///< by time, degC

    /// Appends those of other nodes at the same times.
    void Append(const DepthProfiles& others);
};

/// The field of a resolved profile at depths that depend on the wall alone, closer together at its two sides;
/// without samples for a profile of fewer than two.
/// `temperatures` as in SamplesByDepth.
DepthProfile SamplesOfField(const OpenedProject& project, const profile::ResolvedProfile& profile,
                            std::vector<double>& temperatures);

/// Forms the profiles of some nodes from one output time after the other.
class ProfileSeries {
public:
    /// Of nodes that have a profile. All arguments but the list are borrowed.
    ProfileSeries(OpenedProject& project, const Surface& surface, const SurfaceRays& rays,
                  std::vector<int> nodes);

    /// Adds the output time last read.
    void AddTime();
    DepthProfiles Take() { return std::move(profiles_); }

private:
    DepthProfile SamplesOf(std::size_t position, RayFollower* follower, std::vector<double>& values) const;

    OpenedProject& project_;
    const Surface& surface_;
    const SurfaceRays& rays_;
    std::vector<DepthProfile> sorted_;  ///< pass elements of each node by depth; none in the resolved mode
    DepthProfiles profiles_;
};

}  // namespace qnl::series
