#pragma once

#include <array>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// Sum of the volumes of the part cells (region 0), mm3, in cell order.
double PartVolume(const MeshData& mesh, const std::vector<double>& volumes);

/// Area of a boundary face, mm2: sum over its triangles of |e1 x e2| / 2.
double FaceArea(const std::vector<Point>& points, const BoundaryFace& face);

/// Area of the boundary faces owned by part cells, mm2, summed by face.
double PartArea(const MeshData& mesh, const std::vector<BoundaryFace>& boundary);

/// x, y, z maximum, then x, y, z minimum of all points; all 0 without points.
std::array<double, 6> BoundingBox(const std::vector<Point>& points);

}  // namespace qnl::kernel
