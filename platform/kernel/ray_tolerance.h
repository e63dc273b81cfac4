#pragma once

namespace qnl {

/// Distance below which two places on a ray are the same, for a mesh of mean boundary edge length
/// `meshSize`. Wider when the mesh file holds its points in single precision.
inline double RayEpsilon(double meshSize, bool singlePrecision) {
    return (singlePrecision ? 1e-6 : 1e-8) * meshSize;
}

/// Length that a ray must exceed inside a cell to pass it.
inline double RayPassLength(double meshSize) {
    return 1e-4 * meshSize;
}

}  // namespace qnl
