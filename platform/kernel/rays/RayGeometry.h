#pragma once

#include <cmath>
#include <cstddef>

#include "kernel/mesh/TetraGeometry.h"

namespace qnl::kernel {

/// A closed interval of the ray parameter; empty when low > high.
struct Span {
    double low;
    double high;
};

/// A ray with a frame across it, in which it is a point.
struct Ray {
    /// `unit` must have length 1.
    Ray(const Point& from, const Point& unit);

    Point origin;
    Point direction;
    Point across;  ///< with `aside` and the direction an orthonormal frame
    Point aside;
};

/// Seen along the ray: position across it, and the depth along it, both from the origin.
struct Seen {
    double u;
    double v;
    double depth;
};

inline Seen LookAt(const Ray& ray, const Point& place) {
    const Point offset = Minus(place, ray.origin);
    return {Dot(offset, ray.across), Dot(offset, ray.aside), Dot(offset, ray.direction)};
}

/// How a line seen end on passes an edge: positive when the edge runs counterclockwise around it.
inline double SideOf(const Seen& p, const Seen& q) {
    return p.u * q.v - p.v * q.u;
}

/// What `SideOf` must exceed for the line to be farther than `margin` from the edge's line; a bound that
/// needs no root.
inline double SideSlack(const Seen& p, const Seen& q, double margin) {
    return margin * (std::fabs(p.u - q.u) + std::fabs(p.v - q.v) + margin);
}

/// How the ray stands to the four planes of a tetra of positive volume, in the order of kTetraFaces; both by
/// twice the area of the face.
struct TetraPlanes {
    std::array<double, 4> speed;  ///< outward part of the direction
    std::array<double, 4> room;   ///< distance of the origin inside the plane

    /// Inside the plane at this parameter, six times the volume of the part between the point and the face.
    double RoomAt(std::size_t face, double parameter) const { return room[face] - parameter * speed[face]; }
};

/// Where the ray is inside a tetra, and how it stands to it.
struct TetraClip {
    Span span;
    TetraPlanes planes;
};

/// Parameters at which the ray is inside a tetra of positive volume whose planes are moved outward by
/// `margin`; its planes where they are. No span for a tetra with a face of zero area.
TetraClip ClipTetra(const Tetra& tetra, const Point& origin, const Point& direction, double margin);

/// The span for a tetra of any orientation.
Span SpanInTetra(Tetra tetra, const Point& origin, const Point& direction, double margin);

/// False only when no point of the triangle, as seen along the ray, is nearer to it than `margin`.
bool MayMeet(const Seen& a, const Seen& b, const Seen& c, double margin);

/// How far a point of the triangle can get when its edges are moved outward by `margin`: at most
/// margin L / r, L the longest edge and r the inner radius. 0 for a triangle of zero area.
double EdgeOvershoot(const Triangle& triangle, double margin);

/// Where a ray meets a triangle.
struct TriangleHit {
    bool crossed;         ///< `depth` holds
    double depth;         ///< parameter of the point in the triangle's plane
    bool containsOrigin;  ///< the origin is within the margin of the plane and of the three edges
};

/// Tests a triangle with its three edges moved outward in its plane by `margin`. Within
/// |normal . direction| <= 1e-6 the ray is parallel and the triangle not crossed. A triangle of zero area
/// is neither crossed nor contains anything.
TriangleHit HitTriangle(const Triangle& triangle, const Ray& ray, double margin);

}  // namespace qnl::kernel
