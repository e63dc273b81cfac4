#pragma once

#include <array>
#include <cstddef>

#include "context/ProfileSlots.h"
#include "context/WallLayers.h"

/// What one evaluation of one surface node gives: its values, all zero at first, and what is to be known of
/// them.
struct NodeProfileResult {
    std::array<double, qnl::kProfileSlots> values{};
    bool hasProfile = false;            ///< there was a direction, and at least two pass elements
    qnl::WallLayers layers;             ///< where the run sees inside the cells
    bool shrinkageBeyondWhole = false;  ///< a volume shrinkage was above 100 %

    double& operator[](qnl::ProfileSlot slot) { return values[static_cast<std::size_t>(slot)]; }
    double operator[](qnl::ProfileSlot slot) const { return values[static_cast<std::size_t>(slot)]; }
};
