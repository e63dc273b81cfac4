#include "profile/resolved/EdgeCurvature.h"

#include <algorithm>
#include <cmath>

namespace qnl::profile {

double LimitedCurvature(const EdgeData& edge, double lowest) {
    constexpr double kSmooth = 0.04;
    constexpr double kRough = 0.12;
    const double curvature = edge.secondSlope - edge.firstSlope;
    const double rise = edge.second - edge.first;
    const double size = std::fabs(curvature);
    const double monotone = 2.0 * std::fabs(rise);
    if (!(size > 0.0)) {
        return 0.0;
    }
    if (size <= monotone) {
        return curvature;
    }
    const double departure = std::fabs(rise - 0.5 * (edge.firstSlope + edge.secondSlope)) / size;
    double most = std::clamp((kRough - departure) / (kRough - kSmooth), 0.0, 1.0) * size;
    if (curvature > 0.0) {
        // The parabola of this curvature has its lowest point exactly at the bound.
        const double room = std::max(std::min(edge.first, edge.second) - lowest, 0.0);
        const double root = std::sqrt(std::fabs(rise) + room) + std::sqrt(room);
        most = std::min(most, 2.0 * root * root);
    }
    return std::copysign(std::max(monotone, most), curvature);
}

}  // namespace qnl::profile
