#include "demo/DemoCooling.h"

#include <algorithm>
#include <cmath>

namespace qnl::demo {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDiffusivity = 0.18 / (0.95 * 2.3);  ///< mm2/s

/// Both faces and their images; the first one left out is below 1e-9 at the Fourier numbers it is used for.
double ImageExcess(double depth, double thickness, double seconds) {
    constexpr int kImages = 2;
    const double reach = 2.0 * std::sqrt(kDiffusivity * seconds);
    double excess = 1.0;
    double sign = -1.0;
    for (int image = 0; image < kImages; ++image) {
        excess += sign * (std::erfc((image * thickness + depth) / reach) +
                          std::erfc(((image + 1) * thickness - depth) / reach));
        sign = -sign;
    }
    return excess;
}

double SeriesExcess(double depth, double thickness, double fourier) {
    constexpr int kLastWave = 9;
    double sum = 0.0;
    for (int wave = 1; wave <= kLastWave; wave += 2) {
        sum += std::exp(-wave * wave * kPi * kPi * fourier) * std::sin(wave * kPi * depth / thickness) / wave;
    }
    return 4.0 / kPi * sum;
}

}  // namespace

double SlabExcess(double depth, double thickness, double seconds) {
    constexpr double kEarly = 0.05;
    if (depth <= 0.0 || depth >= thickness) {
        return 0.0;
    }
    const double fourier = kDiffusivity * seconds / (thickness * thickness);
    const double excess =
        fourier < kEarly ? ImageExcess(depth, thickness, seconds) : SeriesExcess(depth, thickness, fourier);
    return std::clamp(excess, 0.0, 1.0);
}

double DemoCooling::BrickExcess(const BlockBox& brick, const kernel::Point& grid, double seconds) const {
    double excess = 1.0;
    for (std::size_t a = part_.Closed() ? 1 : 0; a < 3 && excess > 0.0; ++a) {
        excess *= SlabExcess(part_.edge * (grid[a] - brick.low[a]),
                             part_.edge * (brick.high[a] - brick.low[a]), seconds);
    }
    return excess;
}

double DemoCooling::Excess(const kernel::Point& point, double seconds) const {
    const kernel::Point grid = part_.GridPoint(point);
    double missing = 1.0;
    for (const BlockBox& brick : part_.bricks) {
        missing *= 1.0 - BrickExcess(brick, grid, seconds);
    }
    return 1.0 - missing;
}

double DemoCooling::Temperature(const kernel::Point& point, double seconds) const {
    return kDemoMould + (kDemoMelt - kDemoMould) * Excess(point, seconds);
}

double DemoCooling::TimeTo(const kernel::Point& point, double temperature) const {
    constexpr int kHalvings = 20;
    double early = 0.0;
    double late = 64.0;
    for (int halving = 0; halving < kHalvings; ++halving) {
        const double middle = 0.5 * (early + late);
        (Temperature(point, middle) > temperature ? early : late) = middle;
    }
    return early;
}

}  // namespace qnl::demo
