#pragma once

#include <array>
#include <vector>

#include "context/WallLayers.h"
#include "profile/ProfileScratch.h"
#include "series/OpenedProject.h"
#include "series/PeopleNames.h"
#include "series/SurfaceRays.h"
#include "series/SurfaceResults.h"

namespace qnl::series {

/// Whether surface node `i` belongs to the part and its ray passes at least two elements.
bool HasProfile(const OpenedProject& project, const Surface& surface, const SurfaceRays& rays, std::size_t i);

/// The frozen layers of walls as values of the items kWallNames, in their order.
using WallValues = std::array<std::vector<float>, kWallNames.size()>;

/// The values of one wall, in the order of kWallNames.
std::array<float, kWallNames.size()> ValuesOf(const WallLayers& layers);

/// The walls below the surface nodes at one output time, not a number outside the part and without a profile.
struct WallReadings {
    std::vector<double> hottest;  ///< by surface node: highest temperature along the whole ray, degC
    WallValues layers;            ///< by surface node, mm; empty unless the results are of the resolved mode
};

/// Reads them at the output time last read, on all threads.
WallReadings ReadWalls(OpenedProject& project, const Surface& surface, const SurfaceRays& rays);

/// The wall below a node of the part.
struct NodeWall {
    int node;  ///< index in the mesh, 1-based
    WallLayers layers;
};

/// The walls that the last evaluation of a run found, of the part's nodes with a profile in ascending order;
/// none unless in the resolved mode.
std::vector<NodeWall> WallsOfRun(const FrozenLayerJob& job);

/// The same as ReadWalls gives, from the walls that the run found at that output time.
WallReadings ReadWalls(const std::vector<NodeWall>& walls, const Surface& surface);

/// Follows rays of the resolved mode at the output time last read; one a thread.
class RayFollower {
public:
    RayFollower(const OpenedProject& project, const Surface& surface, const SurfaceRays& rays);

    /// The temperatures along the ray of surface node `i`; until the next call. Fewer than two samples are no
    /// profile.
    const profile::ResolvedProfile& Follow(std::size_t i);
    /// The frozen layers along the ray last followed; all 0 without a profile.
    WallLayers Layers() const;

private:
    const OpenedProject& project_;
    const Surface& surface_;
    const SurfaceRays& rays_;
    profile::ProfileScratch scratch_;
};

}  // namespace qnl::series
