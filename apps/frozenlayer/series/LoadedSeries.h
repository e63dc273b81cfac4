#pragma once

#include <optional>
#include <string>
#include <vector>

#include "series/FreezeHistory.h"
#include "series/FreezingRegions.h"
#include "series/OpenedProject.h"
#include "series/ResultSeries.h"
#include "series/SurfaceRays.h"
#include "series/SurfaceSeries.h"

namespace qnl::series {

/// Everything that people look at in the results of one stage: the surface, its items over time, and what is
/// derived from the temperatures along the inward rays.
struct SeriesResults {
    ResultSeries series;
    OpenedProject project;
    Surface surface;
    SurfaceSeries results;
    SurfaceRays rays;
    std::vector<int> order;                ///< surface nodes along a space-filling curve
    std::optional<FreezeHistory> history;  ///< none for a stage without temperatures, or when stage files are
                                           ///< missing
    DepthProfiles profiles;                ///< filled with the history
    FreezingRegions regions;               ///< filled with the history
    std::string withoutHistory;            ///< why there is none, one sentence
};

/// Loads the series that the words stand for, with the profiles of at most `profileNodes` nodes spread over
/// the part. Raises InputProblem.
SeriesResults LoadSeriesResults(const SeriesWords& words, std::size_t profileNodes);

}  // namespace qnl::series
