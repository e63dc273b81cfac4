#pragma once

#include <cmath>

namespace qnl::input {

/// Speed from its square, cm/s; a node at rest keeps a small one, so that its weight is never 0.
inline double SpeedFromSquare(double square) {
    constexpr double least = 1e-8;
    return square > least ? std::sqrt(square) : least;
}

}  // namespace qnl::input
