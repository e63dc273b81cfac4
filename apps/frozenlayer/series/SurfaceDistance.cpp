#include "series/SurfaceDistance.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qnl::series {

namespace {

using Corners = std::array<Vector3, 3>;

double DistanceFromSegment(const Vector3& begin, const Vector3& end, const Vector3& point) {
    const Vector3 along = Minus(end, begin);
    const Vector3 way = Minus(point, begin);
    const double square = Dot(along, along);
    const double share = square > 0.0 ? std::clamp(Dot(way, along) / square, 0.0, 1.0) : 0.0;
    return Length(Vector3{way.x - share * along.x, way.y - share * along.y, way.z - share * along.z});
}

/// The nearest point lies on an edge, or inside where the point stands above the triangle.
double DistanceFromTriangle(const Corners& corners, const Vector3& point) {
    Vector3 normal = Cross(Minus(corners[1], corners[0]), Minus(corners[2], corners[0]));
    bool above = Normalise(normal);
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t c = 0; c < 3; ++c) {
        const Vector3& begin = corners[c];
        const Vector3& end = corners[(c + 1) % 3];
        nearest = std::min(nearest, DistanceFromSegment(begin, end, point));
        above = above && Dot(Cross(Minus(end, begin), Minus(point, begin)), normal) >= 0.0;
    }
    return above ? std::abs(Dot(Minus(point, corners[0]), normal)) : nearest;
}

}  // namespace

double DistanceFromSurface(const Surface& surface, const Vector3& point) {
    double nearest = std::numeric_limits<double>::infinity();
    for (const std::array<int, 3>& triangle : surface.triangles) {
        Corners corners{};
        for (std::size_t c = 0; c < 3; ++c) {
            const std::array<float, 3>& place = surface.points[static_cast<std::size_t>(triangle[c])];
            corners[c] = {static_cast<double>(place[0]), static_cast<double>(place[1]),
                          static_cast<double>(place[2])};
        }
        nearest = std::min(nearest, DistanceFromTriangle(corners, point));
    }
    return nearest;
}

}  // namespace qnl::series
