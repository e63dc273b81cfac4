#pragma once

#include <cstdint>
#include <limits>
#include <vector>

namespace qnl::series {

/// Range and mean of the finite values; not numbers when there are none.
struct ItemStatistics {
    double min = std::numeric_limits<double>::quiet_NaN();
    double mean = std::numeric_limits<double>::quiet_NaN();
    double max = std::numeric_limits<double>::quiet_NaN();
    std::int64_t finite = 0;
    std::int64_t notFinite = 0;
};

ItemStatistics Summarise(const std::vector<float>& values);

}  // namespace qnl::series
