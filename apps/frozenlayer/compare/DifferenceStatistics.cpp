#include "compare/DifferenceStatistics.h"

#include <cmath>
#include <cstring>

namespace qnl::compare {

namespace {

bool SameBits(float a, float b) {
    std::uint32_t bitsOfA = 0;
    std::uint32_t bitsOfB = 0;
    std::memcpy(&bitsOfA, &a, sizeof a);
    std::memcpy(&bitsOfB, &b, sizeof b);
    return bitsOfA == bitsOfB;
}

double Difference(float a, float b) {
    return static_cast<double>(b) - static_cast<double>(a);
}

/// Sums over the entries at which both values are finite.
struct Sums {
    double magnitudes = 0.0;
    double squares = 0.0;
};

void Count(double difference, std::size_t entry, DifferenceStatistics& statistics, Sums& sums) {
    const double magnitude = std::fabs(difference);
    if (statistics.compared == 0 || magnitude > std::fabs(statistics.largest)) {
        statistics.largest = difference;
        statistics.place = entry;
    }
    ++statistics.compared;
    sums.magnitudes += magnitude;
    sums.squares += difference * difference;
}

}  // namespace

DifferenceStatistics SummariseDifferences(const std::vector<float>& a, const std::vector<float>& b,
                                          const std::vector<std::size_t>& entries) {
    DifferenceStatistics statistics;
    Sums sums;
    for (const std::size_t entry : entries) {
        const bool finiteInA = std::isfinite(a[entry]);
        const bool finiteInB = std::isfinite(b[entry]);
        statistics.sameBits = statistics.sameBits && SameBits(a[entry], b[entry]);
        statistics.finiteInOne += finiteInA != finiteInB ? 1 : 0;
        if (finiteInA && finiteInB) {
            Count(Difference(a[entry], b[entry]), entry, statistics, sums);
        } else {
            ++statistics.notFinite;
        }
    }
    if (statistics.compared > 0) {
        const auto count = static_cast<double>(statistics.compared);
        statistics.meanMagnitude = sums.magnitudes / count;
        statistics.rms = std::sqrt(sums.squares / count);
    }
    return statistics;
}

std::vector<float> Differences(const std::vector<float>& a, const std::vector<float>& b) {
    std::vector<float> differences;
    differences.reserve(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool isNumber = std::isfinite(a[i]) && std::isfinite(b[i]);
        differences.push_back(isNumber ? static_cast<float>(Difference(a[i], b[i]))
                                       : std::numeric_limits<float>::quiet_NaN());
    }
    return differences;
}

}  // namespace qnl::compare
