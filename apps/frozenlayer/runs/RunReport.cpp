#include "runs/RunReport.h"

#include <algorithm>
#include <utility>

#include "project/ProjectPaths.h"
#include "results/ResultFile.h"
#include "series/ItemStatistics.h"
#include "series/PeopleNames.h"
#include "text/NumberText.h"
#include "text/TextTable.h"

namespace qnl::runs {

namespace {

using Align = text::TextTable::Align;

void AddRow(text::TextTable& table, std::string name, std::string unit,
            const series::ItemStatistics& values) {
    table.AddRow({std::move(name), std::move(unit), text::NumberText(values.min),
                  text::NumberText(values.mean), text::NumberText(values.max),
                  std::to_string(values.finite)});
}

series::ItemStatistics LayerStatistics(const std::vector<series::NodeWall>& walls, std::size_t k) {
    std::vector<float> values(walls.size());
    std::transform(walls.begin(), walls.end(), values.begin(),
                   [k](const series::NodeWall& wall) { return series::ValuesOf(wall.layers)[k]; });
    return series::Summarise(values);
}

text::TextTable ItemTable(const EvaluatedTime& time) {
    text::TextTable table({{"Item"},
                           {"Unit"},
                           {"Minimum", Align::Right},
                           {"Mean", Align::Right},
                           {"Maximum", Align::Right},
                           {"Nodes", Align::Right}});
    const bool isWarp = series::IsWarpResult(time.resultFile);
    for (const results::ResultItem& item : time.content->items) {
        const series::PeopleName* people = series::FindPeopleName(item.id, isWarp);
        AddRow(table, people != nullptr ? std::string(people->name) : item.name,
               people != nullptr ? std::string(people->unit) : series::PeopleUnit(item.unit),
               series::Summarise(item.values));
    }
    for (std::size_t k = 0; k < series::kWallNames.size(); ++k) {
        const series::ItemStatistics values = LayerStatistics(time.walls, k);
        if (!isWarp && values.finite > 0) {
            AddRow(table, std::string(series::kWallNames[k].name), std::string(series::kWallNames[k].unit),
                   values);
        }
    }
    return table;
}

void PrintResult(const EvaluatedTime& time, std::ostream& out) {
    const results::ResultFileContent& content = *time.content;
    out << "Output time " << time.time.Text() << ", " << project::NativePath(time.resultFile) << "\n";
    if (content.maxNode == 0) {
        out << "  no node has a result\n\n";
        return;
    }
    ItemTable(time).Print(out);
    out << "\n";
}

void SortByRealTime(std::vector<const EvaluatedTime*>& times) {
    const bool allKnown = std::all_of(
        times.begin(), times.end(), [](const EvaluatedTime* time) { return time->time.seconds.has_value(); });
    if (allKnown) {
        std::stable_sort(times.begin(), times.end(), [](const EvaluatedTime* a, const EvaluatedTime* b) {
            return *a->time.seconds < *b->time.seconds;
        });
    }
}

}  // namespace

bool ReadResults(std::vector<EvaluatedTime>& times) {
    bool allRead = true;
    for (EvaluatedTime& time : times) {
        if (!time.evaluated) {
            continue;
        }
        try {
            time.content = results::ReadResultFile(time.resultFile);
        } catch (const results::ResultFileError& error) {
            RecordFault(error.What());
            allRead = false;
        }
    }
    return allRead;
}

void PrintResultTables(const std::vector<EvaluatedTime>& times, std::ostream& out) {
    std::vector<const EvaluatedTime*> ordered;
    ordered.reserve(times.size());
    for (const EvaluatedTime& time : times) {
        ordered.push_back(&time);
    }
    SortByRealTime(ordered);
    for (const EvaluatedTime* time : ordered) {
        if (time->content) {
            PrintResult(*time, out);
        }
    }
}

series::SeriesFiles SeriesOfRun(const project::StageFile& base, std::vector<EvaluatedTime> times,
                                const series::RunView& view, series::KnownTimes& known) {
    std::vector<series::SeriesTime> seriesTimes;
    seriesTimes.reserve(times.size());
    for (const EvaluatedTime& time : times) {
        seriesTimes.push_back({time.time, time.stageFile, time.resultFile, 0.0});
    }
    series::SeriesFiles files = series::OrderSeriesFiles(base, std::move(seriesTimes), view);
    known = {};
    for (const series::SeriesTime& ordered : files.times) {
        const auto own = std::find_if(times.begin(), times.end(), [&](const EvaluatedTime& time) {
            return time.time.index == ordered.time.index;
        });
        known.contents.push_back(std::move(*own->content));
        known.walls.push_back(std::move(own->walls));
    }
    return files;
}

void PrintWrittenFiles(const std::vector<std::string>& paths, std::ostream& out) {
    out << (paths.empty() ? "No file written\n" : "Files written:\n");
    for (const std::string& path : paths) {
        out << "  " << path << "\n";
    }
}

void PrintDeepWalls(const series::DeepWalls& walls, std::ostream& out) {
    if (walls.deep == 0) {
        return;
    }
    out << "The wall along the inward normal is thicker than the depth window of " +
               text::NumberText(walls.window) +
               " mm (three times the part's volume by its surface area) at " +
               text::CountText(walls.deep, "part node") + " of " + std::to_string(walls.nodes) +
               "; quantities limited to the window say nothing of what lies deeper there.\n";
}

void PrintOpenDirections(const GradientReport& report, std::ostream& out) {
    const int open = report.fewerCurvatures + report.fewerSlopes;
    if (open == 0) {
        return;
    }
    out << "The nodes around do not tell how the fields bend in every direction at " +
               text::CountText(open, "node") + " of " + std::to_string(report.nodes) +
               ", as where one cell is the whole wall; there the fields are linear between nodes.\n";
}

}  // namespace qnl::runs
