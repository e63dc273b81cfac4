#pragma once

#include <cstdint>

#include "series/SeriesFiles.h"

namespace qnl::series {

/// How much the results of a series hold, summed over its output times.
struct SeriesSize {
    std::uintmax_t nodes = 0;   ///< nodes with a result
    std::uintmax_t values = 0;  ///< values of all items
};

/// From the heads of the result files; one that cannot be read counts nothing.
SeriesSize MeasureSeries(const SeriesFiles& series);

}  // namespace qnl::series
