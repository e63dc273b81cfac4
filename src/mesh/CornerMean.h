#pragma once

#include <cstddef>
#include <vector>

#include "platform/MeshRecords.h"

namespace qnl {

/// Mean of the corner values of an entity, summed in corner order in the precision of the values; `values`
/// is 1-based by node. Not a number for an entity without corners.
template <typename Value>
Value CornerMean(const EntityRecord& entity, const Value* values) {
    const int corners = entity.nNode;
    const int* node = entity.nodes;
    Value sum = corners > 0 ? values[node[1]] : Value{};
    for (int c = 2; c <= corners; ++c) {
        sum += values[node[c]];
    }
    return sum / static_cast<Value>(corners);
}

/// Values by node and the values by entity that are made of them, both 1-based.
template <typename Value>
struct MeanTarget {
    const Value* nodes;
    Value* entities;
};

/// Means of all targets on entities 1 to `count`, in one pass over the entities. Entities are independent
/// of each other, so the values do not depend on the thread count.
template <typename Value>
void MeansOverEntities(const EntityRecord* entities, int count,
                       const std::vector<MeanTarget<Value>>& targets) {
    const MeanTarget<Value>* const first = targets.data();
    const std::size_t number = targets.size();
#pragma omp parallel for schedule(static) default(none) shared(entities, count, first, number)
    for (int e = 1; e <= count; ++e) {
        for (std::size_t k = 0; k < number; ++k) {
            first[k].entities[e] = CornerMean(entities[e], first[k].nodes);
        }
    }
}

/// Mean diagonal of the boxes of entities 1 to `count`; 1e-30 mm2 keeps a degenerate one above zero. Not a
/// number when `count` is 0.
double MeanBoxDiagonal(const EntityRecord* entities, int count);

}  // namespace qnl
