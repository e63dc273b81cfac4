#include "kernel/rays/RayGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qnl::kernel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Span kNowhere{kInfinity, -kInfinity};

// True when a point of the triangle's plane lies inside the three edges moved outward by `margin`.
bool InsideEdges(const Triangle& triangle, const Point& normal, double normalLength, const Point& point,
                 double margin) {
    for (std::size_t i = 0; i < 3; ++i) {
        const Point edge = Minus(triangle[(i + 1) % 3], triangle[i]);
        const Point outward = Cross(edge, normal);
        const double distance = Dot(Minus(point, triangle[i]), outward);
        if (!(distance <= margin * std::sqrt(Dot(edge, edge)) * normalLength)) {
            return false;
        }
    }
    return true;
}

}  // namespace

Ray::Ray(const Point& from, const Point& unit) : origin(from), direction(unit), across{}, aside{} {
    std::size_t smallest = 0;
    for (std::size_t a = 1; a < 3; ++a) {
        smallest = std::fabs(unit[a]) < std::fabs(unit[smallest]) ? a : smallest;
    }
    Point axis{};
    axis[smallest] = 1.0;
    across = Cross(unit, axis);
    const double length = std::sqrt(Dot(across, across));
    for (double& component : across) {
        component /= length;
    }
    aside = Cross(unit, across);
}

TetraClip ClipTetra(const Tetra& tetra, const Point& origin, const Point& direction, double margin) {
    TetraClip clip{{-kInfinity, kInfinity}, {}};
    std::array<double, 4> area{};
    for (std::size_t f = 0; f < 4; ++f) {
        const Point& a = tetra[kTetraFaces[f][0]];
        const Point normal = Cross(Minus(tetra[kTetraFaces[f][1]], a), Minus(tetra[kTetraFaces[f][2]], a));
        area[f] = Dot(normal, normal);
        clip.planes.speed[f] = Dot(normal, direction);
        clip.planes.room[f] = Dot(normal, Minus(a, origin));
    }
    bool outside = false;
    for (std::size_t f = 0; f < 4; ++f) {
        const double speed = clip.planes.speed[f];
        const double reach = clip.planes.room[f] + margin * std::sqrt(area[f]);
        const double crossing = reach / speed;
        clip.span.high = std::min(clip.span.high, speed > 0.0 ? crossing : kInfinity);
        clip.span.low = std::max(clip.span.low, speed < 0.0 ? crossing : -kInfinity);
        outside = outside || area[f] == 0.0 || (speed == 0.0 && reach < 0.0);
    }
    clip.span = outside ? kNowhere : clip.span;
    return clip;
}

Span SpanInTetra(Tetra tetra, const Point& origin, const Point& direction, double margin) {
    if (SixVolumes(tetra) < 0.0) {
        std::swap(tetra[2], tetra[3]);
    }
    return ClipTetra(tetra, origin, direction, margin).span;
}

bool MayMeet(const Seen& a, const Seen& b, const Seen& c, double margin) {
    const std::array<const Seen*, 4> corner{&a, &b, &c, &a};
    bool left = true;
    bool right = true;
    for (std::size_t i = 0; i < 3; ++i) {
        const Seen& p = *corner[i];
        const Seen& q = *corner[i + 1];
        const double side = SideOf(p, q);
        const double slack = SideSlack(p, q, margin);
        left = left && side >= -slack;
        right = right && side <= slack;
    }
    return left || right;
}

double EdgeOvershoot(const Triangle& triangle, double margin) {
    double longest = 0.0;
    double around = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double edge = Length(Minus(triangle[(i + 1) % 3], triangle[i]));
        longest = std::max(longest, edge);
        around += edge;
    }
    const double twiceArea = Length(Cross(Minus(triangle[1], triangle[0]), Minus(triangle[2], triangle[0])));
    return twiceArea > 0.0 ? margin * longest * around / twiceArea : 0.0;
}

TriangleHit HitTriangle(const Triangle& triangle, const Ray& ray, double margin) {
    constexpr double kParallel = 1e-6;
    TriangleHit hit{false, 0.0, false};
    const Point normal = Cross(Minus(triangle[1], triangle[0]), Minus(triangle[2], triangle[0]));
    const double length = std::sqrt(Dot(normal, normal));
    if (!(length > 0.0)) {
        return hit;
    }
    const double height = Dot(normal, Minus(triangle[0], ray.origin));
    hit.containsOrigin =
        std::fabs(height) <= margin * length && InsideEdges(triangle, normal, length, ray.origin, margin);
    const double speed = Dot(normal, ray.direction);
    if (std::fabs(speed) <= kParallel * length) {
        return hit;
    }
    hit.depth = height / speed;
    Point point = ray.origin;
    for (std::size_t a = 0; a < 3; ++a) {
        point[a] += hit.depth * ray.direction[a];
    }
    hit.crossed = InsideEdges(triangle, normal, length, point, margin);
    return hit;
}

}  // namespace qnl::kernel
