#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "platform/MeshRecords.h"

namespace qnl::mesh {

/// The values of several fields at one node.
template <typename Value, std::size_t Fields>
using NodeRow = std::array<Value, Fields>;

/// Means of the corner values of an entity, field by field, summed in corner order in the precision of the
/// values; `rows` is 1-based by node. Not a number for an entity without corners.
template <typename Value, std::size_t Fields>
NodeRow<Value, Fields> CornerMean(const EntityRecord& entity, const NodeRow<Value, Fields>* rows) {
    const int corners = entity.nNode;
    const int* node = entity.nodes;
    NodeRow<Value, Fields> mean = corners > 0 ? rows[node[1]] : NodeRow<Value, Fields>{};
    for (int c = 2; c <= corners; ++c) {
        for (std::size_t f = 0; f < Fields; ++f) {
            mean[f] += rows[node[c]][f];
        }
    }
    for (Value& value : mean) {
        value /= static_cast<Value>(corners);
    }
    return mean;
}

/// Fields that lie apart, 1-based by node, joined to one row a node, so that a corner is one place in memory
/// and not one for each field. A null field counts as 0.
template <typename Value, std::size_t Fields>
std::vector<NodeRow<Value, Fields>> JoinFields(int nodes, const std::array<const Value*, Fields>& fields) {
    std::vector<NodeRow<Value, Fields>> rows(static_cast<std::size_t>(nodes) + 1);
    NodeRow<Value, Fields>* const first = rows.data();
#pragma omp parallel for schedule(static) default(none) shared(nodes, fields, first)
    for (int n = 1; n <= nodes; ++n) {
        for (std::size_t f = 0; f < Fields; ++f) {
            first[n][f] = fields[f] != nullptr ? fields[f][n] : Value{};
        }
    }
    return rows;
}

/// CornerMean of entities 1 to `count`, stored in `means`, 1-based by entity; a null field is passed over.
/// Entities are independent of each other, so the values do not depend on the thread count.
template <typename Value, std::size_t Fields>
void MeansOverEntities(const EntityRecord* entities, int count,
                       const std::vector<NodeRow<Value, Fields>>& rows,
                       const std::array<Value*, Fields>& means) {
    const NodeRow<Value, Fields>* const first = rows.data();
#pragma omp parallel for schedule(static) default(none) shared(entities, count, first, means)
    for (int e = 1; e <= count; ++e) {
        const NodeRow<Value, Fields> mean = CornerMean(entities[e], first);
        for (std::size_t f = 0; f < Fields; ++f) {
            if (means[f] != nullptr) {
                means[f][e] = mean[f];
            }
        }
    }
}

/// Mean diagonal of the boxes of entities 1 to `count`; 1e-30 mm2 keeps a degenerate one above zero. Not a
/// number when `count` is 0.
double MeanBoxDiagonal(const EntityRecord* entities, int count);

}  // namespace qnl::mesh
