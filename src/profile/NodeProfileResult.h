#pragma once

#include <array>
#include <cstddef>

#include "context/ProfileSlots.h"

/// What one evaluation of one surface node gives; all zero at first.
struct NodeProfileResult {
    std::array<double, qnl::kProfileSlots> values{};

    double& operator[](qnl::ProfileSlot slot) { return values[static_cast<std::size_t>(slot)]; }
    double operator[](qnl::ProfileSlot slot) const { return values[static_cast<std::size_t>(slot)]; }
};

static_assert(sizeof(NodeProfileResult) == qnl::kProfileSlots * sizeof(double));
