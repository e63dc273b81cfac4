#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Numbers of the results page as text; docs/viewer-data.md describes the layout.
namespace qnl::page {

using Levels = std::vector<std::uint16_t>;
using Integers = std::vector<std::uint32_t>;

/// Range of the values that are numbers; 0 and 0 without any.
struct ValueRange {
    double min = 0.0;
    double max = 0.0;
};
ValueRange FiniteRange(const std::vector<std::vector<float>>& values);

/// Level of a status, which stands for a missing value.
constexpr std::uint16_t StatusLevel(int status) {
    return static_cast<std::uint16_t>(65535 - status);
}

/// Level of a number in a range; a value that is not a number is level StatusLevel(0).
std::uint16_t LevelOf(double value, const ValueRange& range);

/// Bit patterns of single-precision numbers.
Integers BitsOf(const std::vector<float>& values);

/// One block as base64 text; `base`: the array of the time before, of the same length, or null.
std::string EncodeBlock(const Levels& numbers, const Levels* base);
std::string EncodeBlock(const Integers& numbers);

}  // namespace qnl::page
