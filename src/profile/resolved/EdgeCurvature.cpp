#include "profile/resolved/EdgeCurvature.h"

#include <algorithm>
#include <cmath>

namespace qnl::profile {

namespace {

// Curvature of the parabola that passes the nearer end of an edge of this rise by exactly `room`.
double CurvatureWithin(double room, double rise) {
    const double root = std::sqrt(std::fabs(rise) + std::max(room, 0.0)) + std::sqrt(std::max(room, 0.0));
    return 2.0 * root * root;
}

}  // namespace

double CurvatureWithExtremum(const EdgeData& edge, const FieldRange& known) {
    constexpr double kSmooth = 0.05;
    constexpr double kRough = 0.15;
    const double curvature = edge.secondSlope - edge.firstSlope;
    const double rise = edge.second - edge.first;
    const double size = std::fabs(curvature);
    const double monotone = 2.0 * std::fabs(rise);
    if (!(size > 0.0)) {
        return 0.0;
    }
    const double departure = std::fabs(rise - 0.5 * (edge.firstSlope + edge.secondSlope));
    const double room = curvature > 0.0 ? std::min(edge.first, edge.second) - known.lowest
                                        : known.highest - std::max(edge.first, edge.second);
    // A curvature of this size stays within the room whatever the rise.
    if (departure <= kSmooth * size && size <= monotone + 8.0 * room) {
        return curvature;
    }
    const double kept = std::clamp((kRough - departure / size) / (kRough - kSmooth), 0.0, 1.0) * size;
    const double most = std::min(kept, CurvatureWithin(room, rise));
    return std::copysign(std::max(monotone, most), curvature);
}

}  // namespace qnl::profile
