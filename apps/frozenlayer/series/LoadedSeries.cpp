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

/// The nodes of the last regions that are not among `have`.
std::vector<int> RegionNodes(const LoadedSeries& loaded, const std::vector<int>& have) {
    std::vector<int> nodes;
    const auto& regions = loaded.regions.regions;
    for (std::size_t i = 0; i < std::min(kShownRegions, regions.size()); ++i) {
        if (std::find(have.begin(), have.end(), regions[i].node) == have.end()) {
            nodes.push_back(regions[i].node);
        }
    }
    return nodes;
}

/// The profiles of the nodes of the last regions that have none yet; the stage files are read once more.
void AddRegionProfiles(LoadedSeries& loaded) {
    std::vector<int> nodes = RegionNodes(loaded, loaded.profiles.nodes);
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

/// What the temperatures of all output times tell. A run that has followed all rays has the regions before
/// the temperatures are read.
void LoadTemperatures(LoadedSeries& loaded, const std::vector<std::vector<NodeWall>>& walls,
                      std::size_t profileNodes) {
    const kernel::BoundaryGraph& graph = loaded.project.Mesh().boundary;
    std::vector<int> nodes = SpreadNodes(loaded, profileNodes);
    FreezeHistory known;
    if (loaded.project.SeesInsideCells() && !walls.empty()) {
        known = HistoryOfWalls(loaded.project, loaded.series, loaded.surface, walls);
        loaded.regions = FindLastFreezing(graph, known);
        const std::vector<int> own = profileNodes > 0 ? RegionNodes(loaded, nodes) : std::vector<int>{};
        nodes.insert(nodes.end(), own.begin(), own.end());
    }
    ProfileSeries profiles(loaded.project, loaded.surface, loaded.rays, std::move(nodes));
    loaded.history = ReadFreezeHistory(loaded.project, loaded.series, loaded.surface, loaded.rays, profiles,
                                       std::move(known));
    loaded.profiles = profiles.Take();
    loaded.layers = LayerItems(*loaded.history);
    loaded.regions = FindLastFreezing(graph, *loaded.history);
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
    const KnownTimes known{ReadResults(series), {}};
    if (!project.FreezeTemperature()) {
        ForgivePackingIndexOfThermoset();
    }
    return LoadSeries(std::move(series), std::move(project), known, profileNodes);
}

LoadedSeries LoadSeries(SeriesFiles series, OpenedProject project, const KnownTimes& known,
                        std::size_t profileNodes) {
    LoadedSeries loaded{std::move(series), std::move(project), {}, {}, {}, {}, {}, {}, {}, {}, {}};
    loaded.surface = SurfaceOf(loaded.project);
    loaded.results = ResultsOnSurface(loaded.series, known.contents, loaded.project, loaded.surface);
    loaded.rays = TraceSurfaceRays(loaded.project, loaded.surface);
    loaded.order = MortonOrder(loaded.surface.points);
    loaded.withoutHistory = WhyNoHistory(loaded);
    if (loaded.withoutHistory.empty()) {
        LoadTemperatures(loaded, known.walls, profileNodes);
    }
    return loaded;
}

}  // namespace qnl::series
