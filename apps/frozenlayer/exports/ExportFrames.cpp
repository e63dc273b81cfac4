#include "exports/ExportFrames.h"

#include <array>
#include <cstdio>
#include <limits>
#include <utility>

namespace qnl::exports {

namespace {

constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

/// 0 for a node with a result, 1 for one without.
ExportArray ResultStatus(const std::vector<char>& hasResult) {
    std::vector<int> status;
    status.reserve(hasResult.size());
    for (const char has : hasResult) {
        status.push_back(has != 0 ? 0 : 1);
    }
    return {"Status", 1, std::move(status)};
}

/// The way inside from each node: its length, its direction, and where it ends.
void AddWalls(const series::LoadedSeries& loaded, ExportFrame& frame) {
    std::vector<float> walls;
    std::vector<float> directions;
    std::vector<float> ends;
    std::vector<int> status;
    for (std::size_t i = 0; i < loaded.surface.Nodes(); ++i) {
        const double wall = loaded.rays.wall[i];
        const bool has = wall > 0.0;
        const NodeRecord& node = loaded.project.Job().p_Node[loaded.surface.nodes[i]];
        const Vector3& d = loaded.rays.inward[i];
        walls.push_back(has ? static_cast<float>(wall) : kNothing);
        status.push_back(has ? 0 : 1);
        for (const auto& [start, step] : {std::pair(node.x, d.x), {node.y, d.y}, {node.z, d.z}}) {
            directions.push_back(has ? static_cast<float>(step) : kNothing);
            ends.push_back(has ? static_cast<float>(start + wall * step) : kNothing);
        }
    }
    frame.arrays.push_back({"Wall status", 1, std::move(status)});
    frame.arrays.push_back({"Wall thickness [mm]", 1, std::move(walls)});
    frame.arrays.push_back({"Inward direction", 3, std::move(directions)});
    frame.arrays.push_back({"Opposite hit point [mm]", 3, std::move(ends)});
}

void AddFreezing(const series::LoadedSeries& loaded, ExportFrame& frame) {
    const series::FreezeHistory& history = *loaded.history;
    std::vector<int> status;
    for (const series::FreezeStatus value : history.status) {
        status.push_back(static_cast<int>(value));
    }
    frame.numbers.push_back({"Freeze temperature [°C]", history.freezeTemperature});
    frame.arrays.push_back({"Freeze status", 1, std::move(status)});
    frame.arrays.push_back(
        {series::Label("Time to freeze", loaded.series.AxisUnit()), 1, history.timeToFreeze});
    frame.arrays.push_back({"Last to freeze, rank", 1, loaded.regions.rank});
}

}  // namespace

std::string TimeSuffix(std::size_t time) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "_%04zu", time + 1);
    return text.data();
}

std::vector<std::uint8_t> VtkCellTypes(const ExportSurface& surface) {
    constexpr std::uint8_t kTriangle = 5;
    constexpr std::uint8_t kQuad = 9;
    std::vector<std::uint8_t> types;
    std::int64_t begin = 0;
    for (const std::int64_t end : surface.ends) {
        types.push_back(end - begin == 3 ? kTriangle : kQuad);
        begin = end;
    }
    return types;
}

ExportSurface SurfaceForExport(const series::LoadedSeries& loaded) {
    const FrozenLayerJob& job = loaded.project.Job();
    ExportSurface surface{loaded.surface.labels, loaded.surface.points, {}, {}};
    for (int f = 1; f <= job.m_nSurfaces; ++f) {
        for (int c = 1; c <= job.p_Surfce[f].nNode; ++c) {
            surface.corners.push_back(
                loaded.surface.numberOfNode[static_cast<std::size_t>(job.p_Surfce[f].nodes[c])]);
        }
        surface.ends.push_back(static_cast<std::int64_t>(surface.corners.size()));
    }
    return surface;
}

ExportFrame TimeFrame(const series::LoadedSeries& loaded, std::size_t time) {
    ExportFrame frame;
    frame.numbers.push_back({"TimeValue", loaded.series.times[time].axis});
    frame.arrays.push_back(ResultStatus(loaded.results.hasResult[time]));
    for (const auto* items : {&loaded.results.items, &loaded.layers}) {
        for (const series::ItemOverTime& item : *items) {
            const std::vector<float>& values = item.values[time];
            frame.arrays.push_back(
                {series::Label(item.name, item.unit), 1,
                 values.empty() ? std::vector<float>(loaded.surface.Nodes(), kNothing) : values});
        }
    }
    return frame;
}

ExportFrame StaticFrame(const series::LoadedSeries& loaded) {
    ExportFrame frame;
    AddWalls(loaded, frame);
    if (loaded.history && loaded.history->Freezes()) {
        AddFreezing(loaded, frame);
    }
    return frame;
}

}  // namespace qnl::exports
