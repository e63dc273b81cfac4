#pragma once

#include <array>

#include "base/Vector3.h"

namespace qnl::profile {

/// Rows e1, e2, a (1 to 3) by columns x, y, z (1 to 3) of an orthonormal frame; row and column 0 are unused.
using RayFrame = std::array<std::array<double, 4>, 4>;

/// Row 3 of the frame, along which depths are measured.
inline Vector3 DepthAxis(const RayFrame& frame) {
    return {frame[3][1], frame[3][2], frame[3][3]};
}

}  // namespace qnl::profile

/// Frame of a ray along the unit direction `d`; its third axis a is the depth axis.
///
/// Gives 1 for the general frame: e1 = z × d normalised, e2 = d × e1, a = d. Gives 0 where d is nearly
/// along the z axis (squared length of z × d below 1e-5): then the axes of the frame are those of the
/// mesh, with e1 and a reversed when d points to -z.
int BuildRayFrame(qnl::profile::RayFrame& frame, const qnl::Vector3& d);
