#pragma once

#include <cmath>

namespace qnl {

/// A point in mm or a direction.
struct Vector3 {
    double x;
    double y;
    double z;
};

/// Arithmetic of vectors of three components, Vector3 or std::array, in a fixed order of operations: sums run
/// left to right, squares are products, so that results are the same everywhere.

template <class Vector>
Vector Minus(const Vector& a, const Vector& b) {
    const auto& [ax, ay, az] = a;
    const auto& [bx, by, bz] = b;
    return {ax - bx, ay - by, az - bz};
}

template <class Vector>
double Dot(const Vector& a, const Vector& b) {
    const auto& [ax, ay, az] = a;
    const auto& [bx, by, bz] = b;
    return (ax * bx + ay * by) + az * bz;
}

template <class Vector>
Vector Cross(const Vector& a, const Vector& b) {
    const auto& [ax, ay, az] = a;
    const auto& [bx, by, bz] = b;
    return {ay * bz - az * by, az * bx - ax * bz, ax * by - ay * bx};
}

template <class Vector>
double Length(const Vector& a) {
    return std::sqrt(Dot(a, a));
}

/// Divides the direction by its length, component by component. False, with the direction unchanged, when
/// the length is below 1e-20 or not a number.
template <class Vector>
bool Normalise(Vector& direction) {
    constexpr double kShortest = 1e-20;
    const double length = Length(direction);
    if (!(length >= kShortest)) {
        return false;
    }
    auto& [x, y, z] = direction;
    direction = {x / length, y / length, z / length};
    return true;
}

}  // namespace qnl
