#pragma once

#include <optional>
#include <string_view>

#include "platform/Stages.h"
#include "project/OutputTime.h"

namespace qnl::project {

/// What the extension of a result file says it holds; nothing for another one.
std::optional<StageKind> KindOfResult(std::string_view extension);

/// Records a fault for each item that a binary stage result needs and does not hold: the evaluation would
/// take its values as 0 (gas and its like, which may be absent, are not needed). Nothing of a text, whose
/// layout has all items.
void RecordAbsentItems(std::string_view resultFile, StageKind kind, const StageSummary& summary);

}  // namespace qnl::project
