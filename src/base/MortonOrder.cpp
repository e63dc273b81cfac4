#include "base/MortonOrder.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace qnl {

namespace {

constexpr int kBits = 10;

/// Two zero bits behind each of the lowest ten bits.
std::uint32_t SpreadBits(std::uint32_t number) {
    std::uint32_t spread = 0;
    for (int bit = 0; bit < kBits; ++bit) {
        spread |= ((number >> bit) & 1U) << (3 * bit);
    }
    return spread;
}

struct Axis {
    float low = std::numeric_limits<float>::max();
    float high = std::numeric_limits<float>::lowest();

    std::uint32_t Cell(float value) const {
        constexpr float kLast = (1 << kBits) - 1;
        const float extent = high - low;
        const float place = extent > 0.0F ? (value - low) / extent * (kLast + 1.0F) : 0.0F;
        return static_cast<std::uint32_t>(std::min(place, kLast));
    }
};

}  // namespace

std::vector<int> MortonOrder(const std::vector<std::array<float, 3>>& points) {
    std::array<Axis, 3> axes;
    for (const auto& point : points) {
        for (std::size_t a = 0; a < 3; ++a) {
            axes[a].low = std::min(axes[a].low, point[a]);
            axes[a].high = std::max(axes[a].high, point[a]);
        }
    }
    std::vector<std::uint64_t> keys;
    keys.reserve(points.size());
    for (const auto& point : points) {
        const std::uint64_t code = SpreadBits(axes[0].Cell(point[0])) |
                                   SpreadBits(axes[1].Cell(point[1])) << 1 |
                                   SpreadBits(axes[2].Cell(point[2])) << 2;
        keys.push_back(code << 32 | keys.size());
    }
    std::sort(keys.begin(), keys.end());
    std::vector<int> order(keys.size());
    std::transform(keys.begin(), keys.end(), order.begin(),
                   [](std::uint64_t key) { return static_cast<int>(key & 0xFFFFFFFFU); });
    return order;
}

}  // namespace qnl
