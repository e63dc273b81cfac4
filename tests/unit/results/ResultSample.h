#pragma once

#include <string>

#include "results/ResultFile.h"

/// A dense file with two node items (6: four values, 14: four values) and one element item (9: two).
inline qnl::results::StageResult DenseSample() {
    qnl::results::StageResult sample;
    sample.head = {1007, 42, "Mesh\\part.hdf", "Material\\abs.toml", "demo", 3};
    sample.producer = {"tester", 1, 2, 3};
    sample.time = {5, 1.25F, "s"};
    sample.maxNode = 4;
    sample.maxElement = 2;
    sample.items = {
        {6, "Temperature", "\u00b0C", qnl::results::kNodeData, 0.0F, 0.0F, {20.0F, 230.5F, 90.0F, 21.0F}},
        {9, "Axy", "", qnl::results::kElementData, 0.0F, 0.0F, {0.25F, -0.5F}},
        {14, "Volume_Shrinkage", "%", qnl::results::kNodeData, 0.0F, 0.0F, {1.0F, 2.0F, 3.0F, 4.0F}},
    };
    return sample;
}

/// Three rows with node labels.
inline qnl::results::StageResult MappedSample() {
    qnl::results::StageResult sample = DenseSample();
    sample.maxElement = 0;
    sample.nodeIds = std::vector<int>{7, 3, 1000};
    sample.items = {
        {1, "Temperature", "\u00b0C", qnl::results::kNodeData, 0.0F, 0.0F, {50.0F, 60.0F, 70.0F}}};
    return sample;
}
