#include "project/StageGaps.h"

#include <algorithm>
#include <string>

#include "platform/Faults.h"

namespace qnl::project {

namespace {

std::string ListOf(const std::vector<int>& items) {
    std::string list;
    for (const int item : items) {
        list += (list.empty() ? "" : ", ") + std::to_string(item);
    }
    return list.empty() ? "no item at all" : "only " + list;
}

}  // namespace

std::optional<StageKind> KindOfResult(std::string_view extension) {
    const Stage* stage = FindStage(extension);
    if (stage != nullptr) {
        return stage->kind;
    }
    if (extension == kFibreExtension) {
        return StageKind::Fibre;
    }
    return extension == kThicknessExtension ? std::optional(StageKind::Thickness) : std::nullopt;
}

void RecordAbsentItems(std::string_view resultFile, StageKind kind, const StageSummary& summary) {
    if (!summary.isBinary) {
        return;
    }
    for (const StageItem& item : kStageItems) {
        const bool held =
            std::find(summary.items.begin(), summary.items.end(), item.id) != summary.items.end();
        if (item.stage == kind && IsNeeded(kind, item.id) && !held) {
            RecordFault(
                {std::string(resultFile), "item " + std::to_string(item.id) + ", " + item.name, "values",
                 "it is not there, and would count as 0 everywhere: the file holds " + ListOf(summary.items),
                 "export the result again with this item, or give the file of the right stage"});
        }
    }
}

}  // namespace qnl::project
