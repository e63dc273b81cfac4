#pragma once

#include <array>
#include <cstddef>

#include "kernel/rays/RayGeometry.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

/// Triangles of a face as positions in the face's corner list, outward like the face.
struct FaceTriangles {
    std::size_t count;
    std::array<std::array<std::size_t, 3>, 2> corner;
};

/// A quad is split by the diagonal through its corner of smallest node number in the file, so that both
/// owners split it alike.
inline FaceTriangles SplitFace(const FaceTopology& topology, int cell, std::size_t face) {
    const CellShape& shape = topology.Shape(cell);
    if (shape.faceCorners[face] == 3) {
        return {1, {{{0, 1, 2}, {}}}};
    }
    const int* corners = topology.Corners(cell);
    const auto number = [&](std::size_t c) {
        return topology.fileNode[static_cast<std::size_t>(corners[shape.face[face][c]])];
    };
    std::size_t k = 0;
    for (std::size_t c = 1; c < 4; ++c) {
        k = number(c) < number(k) ? c : k;
    }
    return {2, {{{k, (k + 1) % 4, (k + 2) % 4}, {k, (k + 2) % 4, (k + 3) % 4}}}};
}

/// Corner places of a cell.
struct CellPlaces {
    std::array<Point, 8> corner;
    std::size_t count;
};

inline CellPlaces PlacesOf(const FaceTopology& topology, int cell) {
    CellPlaces places{{}, static_cast<std::size_t>(topology.Shape(cell).corners)};
    const int* corners = topology.Corners(cell);
    for (std::size_t c = 0; c < places.count; ++c) {
        places.corner[c] = topology.Place(corners[c]);
    }
    return places;
}

inline Point CornerAverage(const CellPlaces& places) {
    Point sum = places.corner[0];
    for (std::size_t c = 1; c < places.count; ++c) {
        for (std::size_t a = 0; a < 3; ++a) {
            sum[a] += places.corner[c][a];
        }
    }
    for (double& component : sum) {
        component /= static_cast<double>(places.count);
    }
    return sum;
}

/// Calls visit(tetra) for each tetra whose union is the cell: the cell itself, or the tetras from its
/// corner average to the triangles of its faces. These have positive volume where the average lies on the
/// inner side of the triangle.
template <class Visit>
void ForPieces(const FaceTopology& topology, int cell, Visit visit) {
    const CellPlaces places = PlacesOf(topology, cell);
    if (topology.IsTetra(cell)) {
        visit(Tetra{places.corner[0], places.corner[1], places.corner[2], places.corner[3]});
        return;
    }
    const Point middle = CornerAverage(places);
    const CellShape& shape = topology.Shape(cell);
    for (std::size_t face = 0; face < static_cast<std::size_t>(shape.faces); ++face) {
        const FaceTriangles triangles = SplitFace(topology, cell, face);
        for (std::size_t t = 0; t < triangles.count; ++t) {
            const auto& corner = triangles.corner[t];
            visit(Tetra{places.corner[shape.face[face][corner[0]]],
                        places.corner[shape.face[face][corner[2]]],
                        places.corner[shape.face[face][corner[1]]], middle});
        }
    }
}

}  // namespace qnl::kernel
