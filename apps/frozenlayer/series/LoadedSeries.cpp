#include "series/LoadedSeries.h"

#include <algorithm>
#include <utility>

#include "base/MortonOrder.h"

namespace qnl::series {

namespace {

/// At most `most` nodes with a profile, at equal steps along the curve.
std::vector<int> SpreadNodes(const LoadedSeries& loaded, std::size_t most) {
    std::vector<int> candidates;
    for (const int node : loaded.order) {
        if (HasProfile(loaded.project, loaded.surface, loaded.rays, static_cast<std::size_t>(node))) {
            candidates.push_back(node);
        }
    }
    const std::size_t count = std::min(most, candidates.size());
    std::vector<int> chosen;
    for (std::size_t i = 0; i < count; ++i) {
        chosen.push_back(candidates[i * candidates.size() / count]);
    }
    return chosen;
}

/// Empty when the temperatures of all output times can be read.
std::string WhyNoHistory(const LoadedSeries& loaded) {
    if (!loaded.project.HasTemperatures()) {
        return "The stage has no temperatures: there are no profiles and no times to freeze.";
    }
    for (const SeriesTime& time : loaded.series.times) {
        if (!project::FileExists(time.stageFile)) {
            return project::NativePath(time.stageFile) +
                   " is missing: without it there are no profiles and no times to freeze.";
        }
    }
    return {};
}

}  // namespace

LoadedSeries LoadSeries(SeriesFiles series, std::size_t profileNodes) {
    OpenedProject project(series);
    const std::vector<results::ResultFileContent> contents = ReadResults(series);
    if (!project.FreezeTemperature()) {
        ForgivePackingIndexOfThermoset();
    }
    return LoadSeries(std::move(series), std::move(project), contents, profileNodes);
}

LoadedSeries LoadSeries(SeriesFiles series, OpenedProject project,
                        const std::vector<results::ResultFileContent>& contents, std::size_t profileNodes) {
    LoadedSeries loaded{std::move(series), std::move(project), {}, {}, {}, {}, {}, {}, {}, {}};
    loaded.surface = SurfaceOf(loaded.project);
    loaded.results = ResultsOnSurface(loaded.series, contents, loaded.project, loaded.surface);
    loaded.rays = TraceSurfaceRays(loaded.project, loaded.surface);
    loaded.order = MortonOrder(loaded.surface.points);
    loaded.withoutHistory = WhyNoHistory(loaded);
    if (loaded.withoutHistory.empty()) {
        loaded.profiles.nodes = SpreadNodes(loaded, profileNodes);
        loaded.history =
            ReadFreezeHistory(loaded.project, loaded.series, loaded.surface, loaded.rays, loaded.profiles);
        loaded.regions = FindLastFreezing(loaded.project.Mesh().boundary, *loaded.history);
    }
    return loaded;
}

}  // namespace qnl::series
