#pragma once

#include <cmath>

#include "kernel/mesh/MeshData.h"

/// Vector arithmetic in a fixed order of operations: sums run left to right, squares are products.
namespace qnl::kernel {

inline Point Minus(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline double Dot(const Point& a, const Point& b) {
    return (a[0] * b[0] + a[1] * b[1]) + a[2] * b[2];
}

inline Point Cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Length(const Point& a) {
    return std::sqrt(Dot(a, a));
}

}  // namespace qnl::kernel
