#include "series/SurfaceResults.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "kernel/mesh/CellTetras.h"
#include "platform/Faults.h"
#include "project/FaultReport.h"
#include "results/ResultFile.h"
#include "series/PeopleNames.h"

namespace qnl::series {

namespace {

constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

void AddNodes(const OpenedProject& project, Surface& surface) {
    surface.numberOfNode.assign(static_cast<std::size_t>(project.Job().m_nNodes) + 1, -1);
    for (const int node : project.Mesh().boundary.Nodes()) {
        const NodeRecord& record = project.Job().p_Node[node + 1];
        surface.numberOfNode[static_cast<std::size_t>(node) + 1] = static_cast<int>(surface.Nodes());
        surface.nodes.push_back(node + 1);
        surface.labels.push_back(record.label);
        surface.points.push_back(
            {static_cast<float>(record.x), static_cast<float>(record.y), static_cast<float>(record.z)});
    }
}

void AddTriangles(const OpenedProject& project, Surface& surface) {
    const FrozenLayerJob& job = project.Job();
    for (int f = 1; f <= job.m_nSurfaces; ++f) {
        const kernel::FaceTriangles split =
            kernel::SplitFace(job.p_Surfce[f].nodes + 1, job.p_Surfce[f].nNode);
        for (std::size_t i = 0; i < static_cast<std::size_t>(split.count); ++i) {
            std::array<int, 3> triangle{};
            for (std::size_t c = 0; c < 3; ++c) {
                triangle[c] = surface.numberOfNode[static_cast<std::size_t>(split.nodes[i][c])];
            }
            surface.triangles.push_back(triangle);
        }
    }
}

/// Surface node of each row of a result.
std::vector<int> RowsOnSurface(const results::ResultFileContent& content, const std::string& path,
                               const FrozenLayerJob& job, const Surface& surface) {
    std::vector<int> rows;
    rows.reserve(content.nodeIds.size());
    for (const int label : content.nodeIds) {
        const int node = label >= 1 && label <= job.m_nMaxLabel ? job.m_pNodeGlobalIdToLocal[label] : 0;
        const int number = node > 0 ? surface.numberOfNode[static_cast<std::size_t>(node)] : -1;
        if (number < 0) {
            throw project::InputProblem(
                project::NativePath(path) + ": node " + std::to_string(label) +
                " is not on the surface of the mesh; the result belongs to another mesh: make it"
                " again with frozenlayer run");
        }
        rows.push_back(number);
    }
    return rows;
}

/// The item of this id, made where it is missing; items stay ascending.
ItemOverTime& ItemOf(SurfaceResults& series, const results::ResultItem& item, bool isWarp,
                     std::size_t times) {
    const auto place = std::lower_bound(series.items.begin(), series.items.end(), item.id,
                                        [](const ItemOverTime& have, int id) { return have.id < id; });
    if (place != series.items.end() && place->id == item.id) {
        return *place;
    }
    const PeopleName* people = FindPeopleName(item.id, isWarp);
    const std::string unit = people != nullptr ? std::string(people->unit) : PeopleUnit(item.unit);
    const std::string name = people != nullptr ? std::string(people->name) : item.name;
    return *series.items.insert(
        place, {item.id, name, unit == "-" ? "" : unit, std::vector<std::vector<float>>(times)});
}

std::vector<float> Spread(const std::vector<float>& values, const std::vector<int>& rows, std::size_t nodes) {
    std::vector<float> spread(nodes, kNothing);
    for (std::size_t i = 0; i < std::min(values.size(), rows.size()); ++i) {
        spread[static_cast<std::size_t>(rows[i])] = values[i];
    }
    return spread;
}

}  // namespace

Surface SurfaceOf(const OpenedProject& project) {
    Surface surface;
    AddNodes(project, surface);
    AddTriangles(project, surface);
    return surface;
}

std::vector<results::ResultFileContent> ReadResults(const SeriesFiles& series) {
    std::vector<results::ResultFileContent> contents;
    for (const SeriesTime& time : series.times) {
        try {
            contents.push_back(results::ReadResultFile(time.resultFile));
        } catch (const results::ResultFileError& error) {
            throw project::InputProblem(project::FaultSentence(error.What()));
        }
    }
    return contents;
}

void ForgivePackingIndexOfThermoset() {
    for (Fault& fault : TakeFaults()) {
        if (fault.object != "item 11" || fault.expected != "finite values") {
            RecordFault(std::move(fault));
        }
    }
}

SurfaceResults ResultsOnSurface(const SeriesFiles& series,
                                const std::vector<results::ResultFileContent>& contents,
                                const OpenedProject& project, const Surface& surface) {
    SurfaceResults spread;
    const std::size_t times = series.times.size();
    for (std::size_t t = 0; t < times; ++t) {
        const std::string& path = series.times[t].resultFile;
        const std::vector<int> rows = RowsOnSurface(contents[t], path, project.Job(), surface);
        std::vector<char> hasResult(surface.Nodes(), 0);
        for (const int row : rows) {
            hasResult[static_cast<std::size_t>(row)] = 1;
        }
        spread.hasResult.push_back(std::move(hasResult));
        for (const results::ResultItem& item : contents[t].items) {
            ItemOf(spread, item, IsWarpResult(path), times).values[t] =
                Spread(item.values, rows, surface.Nodes());
        }
    }
    return spread;
}

std::string Label(const std::string& name, const std::string& unit) {
    return unit.empty() ? name : name + " [" + unit + "]";
}

}  // namespace qnl::series
