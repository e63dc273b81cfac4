#include "kernel/rays/RayPieces.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "kernel/mesh/CellTetras.h"
#include "kernel/rays/RayGeometry.h"

namespace qnl::kernel {
namespace {

constexpr int kMiddle = 0;  // vertex number of the corner average

// Moving the planes of a tetra carries its ends outside; far outside when it is very flat. The coordinates
// are held near the tetra then, so that no value is taken from beyond its vertices.
std::array<double, 4> Barycentric(const Tetra& tetra, double sixVolumes, const Point& place) {
    constexpr double kOutside = 1e-3;
    std::array<double, 4> lambda{};
    double sum = 0.0;
    for (std::size_t v = 0; v < 4; ++v) {
        Tetra part = tetra;
        part[v] = place;
        lambda[v] = std::clamp(SixVolumes(part) / sixVolumes, -kOutside, 1.0 + kOutside);
        sum += lambda[v];
    }
    for (double& coordinate : lambda) {
        coordinate /= sum;
    }
    return lambda;
}

}  // namespace

PieceFinder::PieceFinder(const RecordMesh& mesh, int boundaryFaces, double epsilon, double passLength)
    : mesh_(mesh), boundaryFaces_(boundaryFaces), epsilon_(epsilon), passLength_(passLength) {}

void PieceFinder::PrepareSlots(int n) {
    while (static_cast<int>(slots_.size()) < n) {
        slots_.push_back(std::make_unique<Slot>());
    }
}

RayPieces PieceFinder::Find(const Point& origin, const Point& direction, const int* passElements, int count,
                            int slot) {
    Slot& pieces = *slots_.at(static_cast<std::size_t>(slot));
    pieces.clear();
    double lastEntry = 0.0;
    for (int i = 0; i < count; ++i) {
        if (passElements[i] <= boundaryFaces_) {
            continue;
        }
        const std::size_t before = pieces.size();
        AddCell(pieces, {origin, direction}, passElements[i] - boundaryFaces_);
        double entry = lastEntry;
        for (std::size_t p = before; p < pieces.size(); ++p) {
            entry = p == before ? pieces[p].from : std::min(entry, pieces[p].from);
        }
        lastEntry = std::max(lastEntry, entry);
    }
    std::sort(pieces.begin(), pieces.end(), [](const RayPiece& a, const RayPiece& b) {
        return std::tie(a.from, a.to, a.cell) < std::tie(b.from, b.to, b.cell);
    });
    EndAtGap(pieces, lastEntry);
    return {pieces.data(), static_cast<int>(pieces.size())};
}

void PieceFinder::AddCell(Slot& pieces, const Ray& ray, int cell) const {
    const int* corners = mesh_.Corners(cell);
    const CellShape& shape = mesh_.Shape(cell);
    if (shape.type == CellType::Tetra) {
        AddTetra(pieces, ray, cell, {corners[0], corners[1], corners[2], corners[3]}, {});
        return;
    }
    const Point middle =
        CornerAverage(mesh_.CornerCount(cell), [&](int c) { return mesh_.Place(corners[c]); });
    for (int face = 0; face < shape.faces; ++face) {
        const std::array<int, 4> nodes = FaceNodes(shape, corners, face);
        const FaceTriangles triangles =
            SplitFace(nodes.data(), shape.faceCorners[static_cast<std::size_t>(face)]);
        for (std::size_t t = 0; t < static_cast<std::size_t>(triangles.count); ++t) {
            const std::array<int, 3>& n = triangles.nodes[t];
            AddTetra(pieces, ray, cell, {n[0], n[2], n[1], kMiddle}, middle);
        }
    }
}

void PieceFinder::AddTetra(Slot& pieces, const Ray& ray, int cell, std::array<int, 4> vertex,
                           const Point& middle) const {
    Tetra tetra;
    for (std::size_t v = 0; v < 4; ++v) {
        tetra[v] = vertex[v] == kMiddle ? middle : mesh_.Place(vertex[v]);
    }
    const double sixVolumes = SixVolumes(tetra);
    const Span span = ClipAnyTetra(tetra, ray.origin, ray.direction, epsilon_);
    const double from = std::max(span.low, 0.0);
    if (!(from < span.high) || sixVolumes == 0.0) {
        return;
    }
    const auto at = [&](double depth) {
        Point place = ray.origin;
        for (std::size_t a = 0; a < 3; ++a) {
            place[a] += depth * ray.direction[a];
        }
        return Barycentric(tetra, sixVolumes, place);
    };
    pieces.push_back({from, span.high, at(from), at(span.high), vertex, cell});
}

// A cell with a bent face on the boundary may be left and entered again; the ray is then no longer inside. Up
// to the entry into the last cell it is: shorter gaps belong to cells too short to be passed.
void PieceFinder::EndAtGap(Slot& pieces, double lastEntry) const {
    double reached = 0.0;
    for (auto piece = pieces.begin(); piece != pieces.end(); ++piece) {
        if (piece->from > lastEntry && piece->from > reached + passLength_) {
            pieces.erase(piece, pieces.end());
            return;
        }
        reached = std::max(reached, piece->to);
    }
}

}  // namespace qnl::kernel
