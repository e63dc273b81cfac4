#pragma once

#include <array>
#include <cstddef>

#include "base/Vector3.h"
#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

using Tetra = std::array<Point, 4>;
using Triangle = std::array<Point, 3>;

/// Faces of a tetra of positive volume, outward.
inline constexpr std::array<std::array<std::size_t, 3>, 4> kTetraFaces{
    {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {0, 3, 2}}};

/// Position in kTetraFaces of the face opposite to a corner.
inline constexpr std::array<std::size_t, 4> kFaceOpposite{2, 3, 1, 0};

/// Six times the volume; positive when corner 3 lies on the side of the first three from which they run
/// counterclockwise.
inline double SixVolumes(const Tetra& t) {
    return Dot(Cross(Minus(t[1], t[0]), Minus(t[2], t[0])), Minus(t[3], t[0]));
}

}  // namespace qnl::kernel
