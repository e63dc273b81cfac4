#include "kernel/mesh/MeshSizes.h"

#include <algorithm>

#include "base/Vector3.h"
#include "kernel/mesh/CellTetras.h"

namespace qnl::kernel {

double PartVolume(const MeshData& mesh, const std::vector<double>& volumes) {
    double sum = 0.0;
    for (std::size_t cell = 0; cell < volumes.size(); ++cell) {
        if (mesh.regions[cell] == 0) {
            sum += volumes[cell];
        }
    }
    return sum;
}

double FaceArea(const std::vector<Point>& points, const BoundaryFace& face) {
    const FaceTriangles triangles = SplitFace(face.nodes.data(), face.corners);
    double area = 0.0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(triangles.count); ++i) {
        const auto point = [&](std::size_t c) -> const Point& {
            return points[static_cast<std::size_t>(triangles.nodes[i][c])];
        };
        area += Length(Cross(Minus(point(1), point(0)), Minus(point(2), point(0)))) / 2.0;
    }
    return area;
}

double PartArea(const MeshData& mesh, const std::vector<BoundaryFace>& boundary) {
    double sum = 0.0;
    for (const BoundaryFace& face : boundary) {
        if (mesh.regions[static_cast<std::size_t>(face.cell)] == 0) {
            sum += FaceArea(mesh.points, face);
        }
    }
    return sum;
}

std::array<double, 6> BoundingBox(const std::vector<Point>& points) {
    if (points.empty()) {
        return {};
    }
    Point high = points.front();
    Point low = points.front();
    for (const Point& point : points) {
        for (std::size_t a = 0; a < 3; ++a) {
            high[a] = std::max(high[a], point[a]);
            low[a] = std::min(low[a], point[a]);
        }
    }
    return {high[0], high[1], high[2], low[0], low[1], low[2]};
}

}  // namespace qnl::kernel
