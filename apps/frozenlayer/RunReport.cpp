#include "RunReport.h"

#include <algorithm>

#include "ItemStatistics.h"
#include "NumberText.h"
#include "PeopleNames.h"
#include "ProjectPaths.h"
#include "TextTable.h"
#include "results/result_file.h"

namespace qnl {

namespace {

using Align = TextTable::Align;

TextTable ItemTable(const ResultFileContent& content, bool isWarp) {
    TextTable table({{"Item"},
                     {"Unit"},
                     {"Minimum", Align::Right},
                     {"Mean", Align::Right},
                     {"Maximum", Align::Right},
                     {"Nodes", Align::Right}});
    for (const ResultItem& item : content.items) {
        const PeopleName* people = FindPeopleName(item.id, isWarp);
        const ItemStatistics values = Summarise(item.values);
        table.AddRow({people != nullptr ? std::string(people->name) : item.name,
                      people != nullptr ? std::string(people->unit) : PeopleUnit(item.unit),
                      NumberText(values.min), NumberText(values.mean), NumberText(values.max),
                      std::to_string(values.finite)});
    }
    return table;
}

void PrintResult(const EvaluatedTime& time, std::ostream& out) {
    const ResultFileContent content = ReadResultFile(time.resultFile);
    out << "Output time " << time.time.Text() << ", " << NativePath(time.resultFile) << "\n";
    if (content.maxNode == 0) {
        out << "  no node has a result\n\n";
        return;
    }
    ItemTable(content, IsWarpResult(time.resultFile)).Print(out);
    out << "\n";
}

void SortByRealTime(std::vector<EvaluatedTime>& times) {
    const bool allKnown = std::all_of(
        times.begin(), times.end(), [](const EvaluatedTime& time) { return time.time.seconds.has_value(); });
    if (allKnown) {
        std::stable_sort(times.begin(), times.end(), [](const EvaluatedTime& a, const EvaluatedTime& b) {
            return *a.time.seconds < *b.time.seconds;
        });
    }
}

}  // namespace

bool PrintResultTables(std::vector<EvaluatedTime> times, std::ostream& out) {
    SortByRealTime(times);
    bool allRead = true;
    for (const EvaluatedTime& time : times) {
        if (!time.evaluated) {
            continue;
        }
        try {
            PrintResult(time, out);
        } catch (const ResultFileError& error) {
            RecordFault(error.What());
            allRead = false;
        }
    }
    return allRead;
}

void PrintWrittenFiles(const std::vector<std::string>& paths, std::ostream& out) {
    out << (paths.empty() ? "No file written\n" : "Files written:\n");
    for (const std::string& path : paths) {
        out << "  " << path << "\n";
    }
}

void PrintDeepWalls(const DeepWalls& walls, std::ostream& out) {
    if (walls.deep == 0) {
        return;
    }
    out << "The wall along the inward normal is thicker than the depth window of " +
               NumberText(walls.window) + " mm (three times the part's volume by its surface area) at " +
               CountText(walls.deep, "part node") + " of " + std::to_string(walls.nodes) +
               "; quantities limited to the window say nothing of what lies deeper there.\n";
}

}  // namespace qnl
