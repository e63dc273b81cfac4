#pragma once

#include <algorithm>

namespace qnl::kernel {

/// Distance below which two places on a ray are the same, for a mesh of mean boundary edge length
/// `meshSize`. Wider when the mesh file holds its points in single precision.
inline double RayEpsilon(double meshSize, bool singlePrecision) {
    return (singlePrecision ? 1e-6 : 1e-8) * meshSize;
}

/// Lengths that decide what a ray passes, mm.
struct RayScale {
    RayScale(double meshSize, bool singlePrecision)
        : epsilon(RayEpsilon(meshSize, singlePrecision)),
          passLength(1e-4 * meshSize),
          reach(std::max(1e-4 * meshSize, 1e3 * epsilon)) {}

    double epsilon;
    double passLength;  ///< that a ray must exceed inside a cell to pass it
    /// Distance around a ray within which cells are followed: far above the rounding of positions and the
    /// tolerance, far below the size of a cell.
    double reach;
};

}  // namespace qnl::kernel
