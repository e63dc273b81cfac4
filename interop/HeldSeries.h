#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// Arrays at one time.
struct TimedArrays {
    std::optional<double> seconds;
    std::vector<ForeignArray> arrays;
};

/// A series in memory: one mesh, with the arrays that hold at all times, and those of each time behind them.
/// Without a time it is the mesh alone, at no known time.
std::unique_ptr<ForeignSeries> HoldSeries(ForeignSnapshot mesh, std::vector<TimedArrays> times,
                                          bool isSi = false);

}  // namespace qnl::interop
