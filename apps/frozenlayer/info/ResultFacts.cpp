#include "context/Mode.h"
#include "info/FactReaders.h"
#include "project/ProjectPaths.h"
#include "results/ResultFile.h"
#include "series/ItemStatistics.h"
#include "series/PeopleNames.h"

namespace qnl::info {

namespace {

constexpr const char* kOwnProgram = "QNL3DFrozenLayer";

bool IsOurs(const results::ResultFileContent& content) {
    return content.producer && content.producer->program == kOwnProgram;
}

std::string ModeName(int flag) {
    const bool known = flag >= 0 && flag < static_cast<int>(kModeRules.size());
    return known ? RulesOf(static_cast<Mode>(flag)).name : "unknown (" + std::to_string(flag) + ")";
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

}  // namespace

FileFacts ReadResultFacts(const std::string& path) {
    try {
        const results::ResultFileContent content = results::ReadResultFile(project::WindowsStyle(path));
        FileFacts facts;
        AddHead(content, facts);
        AddEntries(content, facts);
        facts.tables.push_back(ItemTable(content, series::IsWarpResult(path)));
        return facts;
    } catch (const results::ResultFileError& error) {
        throw project::InputProblem(error.what());
    }
}

}  // namespace qnl::info
