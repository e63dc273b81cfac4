#pragma once

#include "platform/Stages.h"
#include "results/ResultFile.h"

namespace qnl::results {

/// An item of a stage with its table's name, unit and type; the stage must know the number.
ResultItem MakeStageItem(StageKind stage, int id, std::vector<float> values);

}  // namespace qnl::results
