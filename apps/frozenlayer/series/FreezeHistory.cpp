#include "series/FreezeHistory.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "kernel/mesh/MeshSizes.h"

namespace qnl::series {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
constexpr double kPercent = 100.0;

bool HasCorner(const CellRecord& cell, int node) {
    return std::find(cell.nodes + 1, cell.nodes + 1 + cell.nNode, node) != cell.nodes + 1 + cell.nNode;
}

bool Owns(const CellRecord& cell, const SurfaceRecord& face) {
    return std::all_of(face.nodes + 1, face.nodes + 1 + face.nNode,
                       [&](int node) { return HasCorner(cell, node); });
}

kernel::BoundaryFace FaceOf(const SurfaceRecord& record) {
    kernel::BoundaryFace face{0, 0, static_cast<std::uint8_t>(record.nNode), {-1, -1, -1, -1}};
    for (int c = 0; c < record.nNode; ++c) {
        face.nodes[static_cast<std::size_t>(c)] = record.nodes[c + 1] - 1;
    }
    return face;
}

/// Boundary faces stand in the order of their owning cells.
std::vector<double> PartFaceAreas(const FrozenLayerJob& job) {
    std::vector<kernel::Point> points;
    for (int n = 1; n <= job.m_nNodes; ++n) {
        points.push_back({job.p_Node[n].x, job.p_Node[n].y, job.p_Node[n].z});
    }
    std::vector<double> areas(static_cast<std::size_t>(job.m_nSurfaces) + 1);
    int cell = 1;
    for (int f = 1; f <= job.m_nSurfaces; ++f) {
        while (cell < job.m_nCells && !Owns(job.p_Cell[cell], job.p_Surfce[f])) {
            ++cell;
        }
        const bool isPart = job.m_pIsRunnerCell[cell] == 0;
        areas[static_cast<std::size_t>(f)] = isPart ? kernel::FaceArea(points, FaceOf(job.p_Surfce[f])) : 0.0;
    }
    return areas;
}

/// Share of the weight that lies below the limit, %.
double ShareBelow(const std::vector<double>& weights, const double* values, double limit) {
    double below = 0.0;
    double all = 0.0;
    for (std::size_t i = 1; i < weights.size(); ++i) {
        below += values[i] < limit ? weights[i] : 0.0;
        all += weights[i];
    }
    return all > 0.0 ? kPercent * below / all : 0.0;
}

void AddWalls(WallReadings walls, FreezeHistory& history) {
    history.hottest.push_back(std::move(walls.hottest));
    history.layers.push_back(std::move(walls.layers));
}

void SettleFreezing(const SeriesFiles& series, FreezeHistory& history) {
    std::vector<double> times;
    for (const SeriesTime& time : series.times) {
        times.push_back(time.axis);
    }
    const std::size_t nodes = history.hottest.front().size();
    history.timeToFreeze.assign(nodes, std::numeric_limits<float>::quiet_NaN());
    history.status.assign(nodes, FreezeStatus::NoResult);
    if (!history.Freezes()) {
        return;
    }
    std::vector<double> values(times.size());
    for (std::size_t i = 0; i < nodes; ++i) {
        for (std::size_t t = 0; t < times.size(); ++t) {
            values[t] = history.hottest[t][i];
        }
        if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); })) {
            continue;
        }
        const std::optional<double> time = FirstTimeBelow(times, values, history.freezeTemperature);
        history.status[i] = time ? FreezeStatus::Freezes : FreezeStatus::NeverFrozen;
        history.timeToFreeze[i] = time ? static_cast<float>(*time) : history.timeToFreeze[i];
    }
}

}  // namespace

bool FreezeHistory::Freezes() const {
    return std::isfinite(freezeTemperature);
}

PartMeasure MeasurePart(const OpenedProject& project) {
    const FrozenLayerJob& job = project.Job();
    PartMeasure measure;
    measure.faceAreas = PartFaceAreas(job);
    measure.cellVolumes.push_back(0.0);
    for (const double volume : project.Mesh().cellVolumes) {
        const bool isPart = job.m_pIsRunnerCell[measure.cellVolumes.size()] == 0;
        measure.cellVolumes.push_back(isPart ? volume : 0.0);
    }
    return measure;
}

FreezeHistory ReadFreezeHistory(OpenedProject& project, const SeriesFiles& series, const Surface& surface,
                                const SurfaceRays& rays, ProfileSeries& profiles, FreezeHistory known) {
    FreezeHistory history = std::move(known);
    const bool knowsWalls = !history.hottest.empty();
    history.freezeTemperature = project.FreezeTemperature().value_or(kNothing);
    const PartMeasure measure = MeasurePart(project);
    for (const SeriesTime& time : series.times) {
        project.LoadTemperatures(time.stageFile);
        if (!knowsWalls) {
            AddWalls(ReadWalls(project, surface, rays), history);
        }
        const FrozenLayerJob& job = project.Job();
        history.frozenVolume.push_back(
            ShareBelow(measure.cellVolumes, job.m_pCellData[kTemperature].get(), history.freezeTemperature));
        history.frozenSurface.push_back(
            ShareBelow(measure.faceAreas, job.m_pSurfData[kTemperature].get(), history.freezeTemperature));
        profiles.AddTime();
    }
    if (!knowsWalls) {
        SettleFreezing(series, history);
    }
    return history;
}

FreezeHistory HistoryOfWalls(const OpenedProject& project, const SeriesFiles& series, const Surface& surface,
                             const std::vector<std::vector<NodeWall>>& walls) {
    FreezeHistory history;
    history.freezeTemperature = project.FreezeTemperature().value_or(kNothing);
    for (const std::vector<NodeWall>& found : walls) {
        AddWalls(ReadWalls(found, surface), history);
    }
    SettleFreezing(series, history);
    return history;
}

std::optional<double> FirstTimeBelow(const std::vector<double>& times, const std::vector<double>& values,
                                     double limit) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!(values[i] < limit)) {
            continue;
        }
        if (i == 0) {
            return times[0];
        }
        const double share = (values[i - 1] - limit) / (values[i - 1] - values[i]);
        return times[i - 1] + share * (times[i] - times[i - 1]);
    }
    return std::nullopt;
}

}  // namespace qnl::series
