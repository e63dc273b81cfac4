#pragma once

#include <array>
#include <vector>

namespace qnl {

/// Indices of the points by the interleaved bits of their cell in a grid of 1024 cells along each side of
/// their box; points of one cell keep their order. Points that follow each other stand near each other.
std::vector<int> MortonOrder(const std::vector<std::array<float, 3>>& points);

}  // namespace qnl
