#include "series/ItemStatistics.h"

#include <algorithm>
#include <cmath>

namespace qnl::series {

ItemStatistics Summarise(const std::vector<float>& values) {
    ItemStatistics statistics;
    double sum = 0.0;
    for (const float value : values) {
        if (!std::isfinite(value)) {
            ++statistics.notFinite;
            continue;
        }
        const double number = value;
        statistics.min = statistics.finite == 0 ? number : std::min(statistics.min, number);
        statistics.max = statistics.finite == 0 ? number : std::max(statistics.max, number);
        sum += number;
        ++statistics.finite;
    }
    if (statistics.finite > 0) {
        statistics.mean = sum / static_cast<double>(statistics.finite);
    }
    return statistics;
}

}  // namespace qnl::series
