#pragma once

#include "base/Vector3.h"
#include "series/SurfaceResults.h"

namespace qnl::series {

/// Distance of a point from the triangles of the surface, mm; infinite without any.
double DistanceFromSurface(const Surface& surface, const Vector3& point);

}  // namespace qnl::series
