#pragma once

#include <optional>
#include <string>
#include <vector>

#include "series/FreezeHistory.h"
#include "series/FreezingRegions.h"
#include "series/OpenedProject.h"
#include "series/SeriesFiles.h"
#include "series/SurfaceRays.h"
#include "series/SurfaceResults.h"

namespace qnl::series {

/// Everything that people look at in the results of one stage: the surface, its items over time, and what is
/// derived from the temperatures along the inward rays.
struct LoadedSeries {
    SeriesFiles series;
    OpenedProject project;
    Surface surface;
    SurfaceResults results;
    std::vector<ItemOverTime> layers;  ///< the first kLayerNames; none unless of the resolved mode
    SurfaceRays rays;
    std::vector<int> order;                ///< surface nodes along a space-filling curve
    std::optional<FreezeHistory> history;  ///< none for a stage without temperatures, or when stage files are
                                           ///< missing
    DepthProfiles profiles;                ///< filled with the history
    FreezingRegions regions;               ///< filled with the history
    std::string withoutHistory;            ///< why there is none, one sentence
};

/// Regions whose nodes have profiles of their own.
inline constexpr std::size_t kShownRegions = 10;

/// Loads a series from its files, with the profiles of at most `profileNodes` nodes spread over the part and,
/// unless that is none, of the nodes of the regions that freeze last.
/// Raises InputProblem.
LoadedSeries LoadSeries(SeriesFiles series, std::size_t profileNodes);

/// What is known of the output times of a series, by time.
struct KnownTimes {
    std::vector<results::ResultFileContent> contents;  ///< of the result files
    std::vector<std::vector<NodeWall>> walls;          ///< as a run of the resolved mode found them, or none
};

/// The same from an opened project and what is known of the times.
LoadedSeries LoadSeries(SeriesFiles series, OpenedProject project, const KnownTimes& known,
                        std::size_t profileNodes);

}  // namespace qnl::series
