#include "exports/ExportFrames.h"

#include <algorithm>
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
        {ExportLabel("Time to freeze", loaded.series.AxisUnit()), 1, history.timeToFreeze});
    frame.arrays.push_back({"Last to freeze, rank", 1, loaded.regions.rank});
}

constexpr std::array<const char*, 3> kAxes{"x", "y", "z"};

/// "Average velocity" of the item "Average velocity, x"; empty for one that is no such component.
std::string VectorName(const series::ItemOverTime& item, std::size_t axis) {
    const std::string ending = std::string(", ") + kAxes[axis];
    const std::size_t length = item.name.size() - std::min(item.name.size(), ending.size());
    return item.name.compare(length, std::string::npos, ending) == 0 ? item.name.substr(0, length) : "";
}

/// Whether a vector begins with item `i`: its three components follow each other.
bool BeginsVector(const std::vector<series::ItemOverTime>& items, std::size_t i) {
    const std::string name = i + kAxes.size() <= items.size() ? VectorName(items[i], 0) : "";
    return !name.empty() && VectorName(items[i + 1], 1) == name && VectorName(items[i + 2], 2) == name &&
           items[i + 1].unit == items[i].unit && items[i + 2].unit == items[i].unit;
}

/// One value of each of the items by node; not a number where an item has none.
std::vector<float> Interleaved(const series::ItemOverTime* items, std::size_t components, std::size_t time,
                               std::size_t nodes) {
    std::vector<float> values(nodes * components, kNothing);
    for (std::size_t c = 0; c < components; ++c) {
        const std::vector<float>& own = items[c].values[time];
        for (std::size_t i = 0; i < own.size(); ++i) {
            values[i * components + c] = own[i];
        }
    }
    return values;
}

void AddItems(const std::vector<series::ItemOverTime>& items, std::size_t time, std::size_t nodes,
              ExportFrame& frame) {
    for (std::size_t i = 0; i < items.size();) {
        const bool isVector = BeginsVector(items, i);
        const std::size_t components = isVector ? kAxes.size() : 1;
        frame.arrays.push_back(
            {ExportLabel(isVector ? VectorName(items[i], 0) : items[i].name, items[i].unit),
             static_cast<int>(components), Interleaved(&items[i], components, time, nodes)});
        i += components;
    }
}

}  // namespace

std::string ExportLabel(const std::string& name, const std::string& unit) {
    std::string text;
    for (const char character : series::Label(name, unit)) {
        text += character == '/' ? " per " : std::string(1, character);
    }
    return text;
}

std::string ComponentName(const ExportArray& vector, std::size_t component) {
    const std::size_t bracket = std::min(vector.name.rfind(" ["), vector.name.size());
    return vector.name.substr(0, bracket) + ", " + kAxes[component] + vector.name.substr(bracket);
}

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
        AddItems(*items, time, loaded.surface.Nodes(), frame);
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
