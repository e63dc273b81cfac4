#pragma once

#include <array>

#include "context/FrozenLayerJob.h"

namespace qnl::output {

/// What the item table says of one item: its texts, its source array and when it is written.
struct ItemDefinition {
    int id;
    const char* name;
    const char* unit;
    OwnedArray<double> FrozenLayerJob::*source;
    bool (*written)(const FrozenLayerJob&);
};

constexpr int kItemCount = 20;
extern const std::array<ItemDefinition, kItemCount> kItemDefinitions;

/// Fills the output item table: texts, sources, output flags, running maxima and minima over the nodes,
/// and the number of items written. A volume shrinkage that is zero everywhere is not written. Gives 1.
int SetOutputItemInformation(FrozenLayerJob& job);

}  // namespace qnl::output
