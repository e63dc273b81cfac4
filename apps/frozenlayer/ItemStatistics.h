#pragma once

#include <cstdint>
#include <vector>

namespace qnl {

/// Range and mean of the finite values; all zero when there are none.
struct ItemStatistics {
    double min = 0.0;
    double mean = 0.0;
    double max = 0.0;
    std::int64_t finite = 0;
    std::int64_t notFinite = 0;
};

ItemStatistics Summarise(const std::vector<float>& values);

}  // namespace qnl
