#include "kernel/mesh/CellVolumes.h"

#include <cmath>
#include <string>
#include <utility>

#include "kernel/mesh/CellTetras.h"
#include "kernel/mesh/MeshFault.h"
#include "kernel/mesh/TetraGeometry.h"

namespace qnl::kernel {
namespace {

// Pairs of corners that change places when a cell of this type is turned.
struct TurnRule {
    CellType type;
    int pairs;
    std::array<std::array<int, 2>, 4> corners;
};

constexpr std::array<TurnRule, 4> kTurnRules{{
    {CellType::Tetra, 1, {{{2, 3}}}},
    {CellType::Hexa, 4, {{{0, 4}, {1, 5}, {2, 6}, {3, 7}}}},
    {CellType::Wedge, 3, {{{0, 3}, {1, 4}, {2, 5}}}},
    {CellType::Pyramid, 1, {{{1, 3}}}},
}};

void TurnCell(CellType type, int* corners) {
    for (const TurnRule& rule : kTurnRules) {
        for (std::size_t i = 0; rule.type == type && i < static_cast<std::size_t>(rule.pairs); ++i) {
            std::swap(corners[rule.corners[i][0]], corners[rule.corners[i][1]]);
        }
    }
}

double FaceVolume(const MeshData& mesh, const Point& apex, const std::array<int, 4>& face, int corners,
                  double sum) {
    const FaceTriangles triangles = SplitFace(face.data(), corners);
    for (std::size_t i = 0; i < static_cast<std::size_t>(triangles.count); ++i) {
        const std::array<int, 3>& nodes = triangles.nodes[i];
        const auto point = [&](std::size_t c) -> const Point& {
            return mesh.points[static_cast<std::size_t>(nodes[c])];
        };
        sum += TetraVolume(apex, point(0), point(1), point(2));
    }
    return sum;
}

void CheckVolumes(const std::vector<double>& volumes) {
    for (std::size_t cell = 0; cell < volumes.size(); ++cell) {
        if (!std::isfinite(volumes[cell]) || volumes[cell] <= 0.0) {
            const char* fault = std::isfinite(volumes[cell]) ? " has zero volume" : " has no finite volume";
            throw MeshFault("cell " + std::to_string(cell + 1) + fault);
        }
    }
}

}  // namespace

double TetraVolume(const Point& p0, const Point& p1, const Point& p2, const Point& p3) {
    return SixVolumes({p0, p1, p2, p3}) / 6.0;
}

double CellVolume(const MeshData& mesh, int cell) {
    const CellShape& shape = mesh.Shape(cell);
    const int* corners = mesh.Corners(cell);
    const auto point = [&](int c) -> const Point& {
        return mesh.points[static_cast<std::size_t>(corners[c])];
    };
    if (shape.type == CellType::Tetra) {
        return TetraVolume(point(0), point(1), point(2), point(3));
    }
    const Point average = CornerAverage(shape.corners, point);
    double volume = 0.0;
    for (int face = 0; face < shape.faces; ++face) {
        const int faceCorners = shape.faceCorners[static_cast<std::size_t>(face)];
        volume = FaceVolume(mesh, average, FaceNodes(shape, corners, face), faceCorners, volume);
    }
    return volume;
}

TurnedCells TurnNegativeCells(MeshData& mesh, std::vector<double>& volumes) {
    const int cells = mesh.Cells();
    volumes.resize(static_cast<std::size_t>(cells));
    int turnedWedges = 0;
    int turnedOthers = 0;
#pragma omp parallel for schedule(static) reduction(+ : turnedWedges, turnedOthers)
    for (int cell = 0; cell < cells; ++cell) {
        double volume = CellVolume(mesh, cell);
        if (volume < 0.0) {
            const CellType type = mesh.Shape(cell).type;
            TurnCell(type, mesh.connectivity.data() + mesh.offsets[static_cast<std::size_t>(cell)]);
            volume = CellVolume(mesh, cell);
            turnedWedges += type == CellType::Wedge ? 1 : 0;
            turnedOthers += type == CellType::Wedge ? 0 : 1;
        }
        volumes[static_cast<std::size_t>(cell)] = volume;
    }
    CheckVolumes(volumes);
    return {turnedWedges, turnedOthers};
}

}  // namespace qnl::kernel
