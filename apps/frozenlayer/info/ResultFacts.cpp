#include <filesystem>
#include <utility>
#include <vector>

#include "context/Mode.h"
#include "info/FactReaders.h"
#include "platform/Faults.h"
#include "project/ProjectPaths.h"
#include "project/ResultState.h"
#include "project/StageGaps.h"
#include "results/ResultFile.h"
#include "series/ItemStatistics.h"
#include "series/PeopleNames.h"
#include "series/SeriesFiles.h"
#include "series/SurfaceRays.h"
#include "series/WallReadings.h"

namespace qnl::info {

namespace {

constexpr const char* kOwnProgram = "QNL3DFrozenLayer";

bool IsOurs(const results::ResultFileContent& content) {
    return content.producer && content.producer->program == kOwnProgram;
}

std::string ModeName(int flag) {
    const std::optional<Mode> mode = ModeOfFlag(flag);
    return mode ? RulesOf(*mode).name : "unknown (" + std::to_string(flag) + ")";
}

void AddHead(const results::ResultFileContent& content, FileFacts& facts) {
    if (content.producer) {
        facts.Add("program", "Written by", "", content.producer->program);
    }
    if (IsOurs(content)) {
        facts.Add("mode", "Mode", "", ModeName(content.head.flag));
        facts.Add("mesh", "Mesh", "", project::NativePath(content.head.mesh));
        facts.Add("material", "Material", "", project::NativePath(content.head.material));
    } else if (content.time && content.time->unit == "s") {
        facts.Add("time_index", "Output time index", "", std::int64_t{content.time->index});
        facts.Add("time_s", "Output time", "s", double{content.time->value});
    }
}

/// Of a result that stands in its project.
void AddState(const std::string& path, FileFacts& facts) {
    try {
        const project::StageFile result = project::SplitRunPath(path);
        const std::optional<project::StageFile> stage = project::StageOfResult(result);
        if (stage) {
            facts.Add("state", "State", "", project::SeriesState(*stage).Of(result.index).Text());
        }
    } catch (const project::InputProblem&) {
        facts.Add("state", "State", "", std::string("not known: it stands in no project"));
    }
}

void AddEntries(const results::ResultFileContent& content, FileFacts& facts) {
    facts.Add("has_node_ids", "Rows carry node labels", "", content.hasNodeIds);
    facts.Add("node_entries", content.hasNodeIds ? "Nodes with a result" : "Node entries (largest label)", "",
              std::int64_t{content.maxNode});
    if (content.maxElement > 0) {
        facts.Add("element_entries", "Element entries", "", std::int64_t{content.maxElement});
    }
}

FactTable ItemTable(const results::ResultFileContent& content, bool isWarp) {
    FactTable table{"items",
                    "Items",
                    {{"id", "Id"},
                     {"name", "Name in the file"},
                     {"meaning", "Meaning"},
                     {"unit", "Unit"},
                     {"min", "Minimum"},
                     {"mean", "Mean"},
                     {"max", "Maximum"},
                     {"values", "Values"},
                     {"not_finite", "Not finite"}},
                    {}};
    for (const results::ResultItem& item : content.items) {
        const series::PeopleName* people =
            IsOurs(content) ? series::FindPeopleName(item.id, isWarp) : nullptr;
        const series::ItemStatistics values = series::Summarise(item.values);
        table.rows.push_back({std::int64_t{item.id}, item.name,
                              people != nullptr ? std::string(people->name) : item.name,
                              people != nullptr ? std::string(people->unit) : series::PeopleUnit(item.unit),
                              values.min, values.mean, values.max, values.finite, values.notFinite});
    }
    return table;
}

/// The frozen layers that the profiles of a result of the resolved mode show.
FactTable LayerTable(const std::string& path) {
    const series::SeriesFiles files = series::FindSeriesFiles({{path}, true});
    series::OpenedProject project(files);
    const series::Surface surface = series::SurfaceOf(project);
    const series::SurfaceRays rays = series::TraceSurfaceRays(project, surface);
    project.LoadTemperatures(files.times.front().stageFile);
    const series::WallReadings walls = series::ReadWalls(project, surface, rays);
    FactTable table{"layers",
                    "Frozen layers, read along the normals from the stage result",
                    {{"id", "Id"},
                     {"meaning", "Meaning"},
                     {"unit", "Unit"},
                     {"min", "Minimum"},
                     {"mean", "Mean"},
                     {"max", "Maximum"},
                     {"values", "Values"}},
                    {}};
    for (std::size_t k = 0; k < series::kWallNames.size(); ++k) {
        const series::PeopleName& name = series::kWallNames[k];
        const series::ItemStatistics values = series::Summarise(walls.layers[k]);
        table.rows.push_back({std::int64_t{name.id}, std::string(name.name), std::string(name.unit),
                              values.min, values.mean, values.max, values.finite});
    }
    return table;
}

/// A result without its project is told of all the same.
void AddLayers(const std::string& path, FileFacts& facts) {
    std::vector<Fault> before = TakeFaults();
    try {
        facts.tables.push_back(LayerTable(path));
    } catch (const project::InputProblem& problem) {
        facts.Add("layers_missing", "Frozen layers", "", std::string("not known: ") + problem.what());
        TakeFaults();
    }
    for (Fault& fault : before) {
        RecordFault(std::move(fault));
    }
}

bool HasLayers(const results::ResultFileContent& content, const std::string& path) {
    return IsOurs(content) && content.head.flag == static_cast<int>(Mode::Resolved) &&
           !series::IsWarpResult(path);
}

}  // namespace

FileFacts ReadResultFacts(const std::string& path) {
    try {
        const results::ResultFileContent content = results::ReadResultFile(project::WindowsStyle(path));
        FileFacts facts;
        AddHead(content, facts);
        if (IsOurs(content)) {
            AddState(path, facts);
        }
        AddEntries(content, facts);
        facts.tables.push_back(ItemTable(content, series::IsWarpResult(path)));
        const auto kind = project::KindOfResult(std::filesystem::path(path).extension().string());
        if (kind) {
            project::RecordAbsentItems(path, *kind, project::SummaryOf(content));
        }
        if (HasLayers(content, path)) {
            AddLayers(path, facts);
        }
        return facts;
    } catch (const results::ResultFileError& error) {
        throw project::InputProblem(error.what());
    }
}

}  // namespace qnl::info
