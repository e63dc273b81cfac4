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

/// The profiles of the nodes of the last regions that have none yet; the stage files are read once more.
void AddRegionProfiles(LoadedSeries& loaded) {
    std::vector<int> nodes;
    const auto& regions = loaded.regions.regions;
    for (std::size_t i = 0; i < std::min(kShownRegions, regions.size()); ++i) {
        const std::vector<int>& have = loaded.profiles.nodes;
        if (std::find(have.begin(), have.end(), regions[i].node) == have.end()) {
            nodes.push_back(regions[i].node);
        }
    }
    if (nodes.empty()) {
        return;
    }
    ProfileSeries profiles(loaded.project, loaded.surface, loaded.rays, std::move(nodes));
    for (const SeriesTime& time : loaded.series.times) {
        loaded.project.LoadTemperatures(time.stageFile);
        profiles.AddTime();
    }
    loaded.profiles.Append(profiles.Take());
}

/// The frozen layers as items.
std::vector<ItemOverTime> LayerItems(const FreezeHistory& history) {
    std::vector<ItemOverTime> items;
    const bool told = history.Freezes() && !history.layers.front().front().empty();
    for (std::size_t k = 0; told && k < kLayerNames; ++k) {
        items.push_back(
            {kWallNames[k].id, std::string(kWallNames[k].name), std::string(kWallNames[k].unit), {}});
        for (const WallValues& layers : history.layers) {
            items.back().values.push_back(layers[k]);
        }
    }
    return items;
}

/// What the temperatures of all output times tell.
void LoadTemperatures(LoadedSeries& loaded, std::size_t profileNodes) {
    ProfileSeries profiles(loaded.project, loaded.surface, loaded.rays, SpreadNodes(loaded, profileNodes));
    loaded.history = ReadFreezeHistory(loaded.project, loaded.series, loaded.surface, loaded.rays, profiles);
    loaded.profiles = profiles.Take();
    loaded.layers = LayerItems(*loaded.history);
    loaded.regions = FindLastFreezing(loaded.project.Mesh().boundary, *loaded.history);
    if (profileNodes > 0) {
        AddRegionProfiles(loaded);
    }
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
    LoadedSeries loaded{std::move(series), std::move(project), {}, {}, {}, {}, {}, {}, {}, {}, {}};
    loaded.surface = SurfaceOf(loaded.project);
    loaded.results = ResultsOnSurface(loaded.series, contents, loaded.project, loaded.surface);
    loaded.rays = TraceSurfaceRays(loaded.project, loaded.surface);
    loaded.order = MortonOrder(loaded.surface.points);
    loaded.withoutHistory = WhyNoHistory(loaded);
    if (loaded.withoutHistory.empty()) {
        LoadTemperatures(loaded, profileNodes);
    }
    return loaded;
}

}  // namespace qnl::series
