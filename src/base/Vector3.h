#pragma once

#include <cmath>

namespace qnl {

/// A point in mm or a direction. All sums run left to right, so that results are the same everywhere.
struct Vector3 {
    double x;
    double y;
    double z;
};

inline double Dot(const Vector3& a, const Vector3& b) {
    return (a.x * b.x + a.y * b.y) + a.z * b.z;
}

inline double Length(const Vector3& a) {
    return std::sqrt(Dot(a, a));
}

inline Vector3 Cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Divides the direction by its length, component by component. False, with the direction unchanged, when
/// the length is below 1e-20 or not a number.
inline bool Normalise(Vector3& direction) {
    constexpr double kShortest = 1e-20;
    const double length = Length(direction);
    if (!(length >= kShortest)) {
        return false;
    }
    direction = {direction.x / length, direction.y / length, direction.z / length};
    return true;
}

}  // namespace qnl
