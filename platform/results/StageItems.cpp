#include "results/StageItems.h"

#include <utility>

namespace qnl::results {

ResultItem MakeStageItem(StageKind stage, int id, std::vector<float> values) {
    const StageItem* item = FindStageItem(stage, id);
    if (item == nullptr) {
        throw std::invalid_argument("the stage has no item " + std::to_string(id));
    }
    return {id, item->name, item->unit, item->type, 0.0F, 0.0F, std::move(values)};
}

}  // namespace qnl::results
