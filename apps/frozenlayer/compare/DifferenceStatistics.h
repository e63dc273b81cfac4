#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace qnl::compare {

/// How far two lists of values are apart, entry by entry: those of B minus those of A.
struct DifferenceStatistics {
    std::int64_t compared = 0;   ///< entries at which both values are finite; the numbers below are of these
    std::int64_t notFinite = 0;  ///< all other entries
    std::int64_t finiteInOne = 0;  ///< those of them at which one value is finite
    bool sameBits = true;          ///< at all entries
    std::size_t place = 0;         ///< entry of the largest difference, the first of equal ones
    double largest = std::numeric_limits<double>::quiet_NaN();  ///< of greatest magnitude, with its sign
    double meanMagnitude = std::numeric_limits<double>::quiet_NaN();
    double rms = std::numeric_limits<double>::quiet_NaN();  ///< root of the mean square

    /// Whether there is a difference between finite values.
    bool Differs() const { return largest < 0.0 || largest > 0.0; }
};

/// Compares the values at some entries, summed in their order. Not numbers when there is nothing to compare.
DifferenceStatistics SummariseDifferences(const std::vector<float>& a, const std::vector<float>& b,
                                          const std::vector<std::size_t>& entries);

/// B minus A of lists of equal length; not a number where one of both values is not finite.
std::vector<float> Differences(const std::vector<float>& a, const std::vector<float>& b);

}  // namespace qnl::compare
