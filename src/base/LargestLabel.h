#pragma once

#include <algorithm>

#include "platform/MeshRecords.h"

namespace qnl {

/// Largest label of the nodes 1 to `count`; 0 without nodes.
inline int LargestLabel(const NodeRecord* nodes, int count) {
    int largest = 0;
    for (int node = 1; node <= count; ++node) {
        largest = std::max(largest, nodes[node].label);
    }
    return largest;
}

}  // namespace qnl
