#pragma once

#include <array>
#include <cstddef>

#include "kernel/mesh/CellTetras.h"
#include "kernel/rays/RayGeometry.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

/// Triangles of a local face of a cell, outward like the face, split by the order of the file.
inline CornerTriangles SplitFace(const FaceTopology& topology, int cell, std::size_t face) {
    const CellShape& shape = topology.Shape(cell);
    const int* corners = topology.Corners(cell);
    return SplitCorners(shape.faceCorners[face], [&](std::size_t c) {
        return topology.fileNode[static_cast<std::size_t>(corners[shape.face[face][c]])];
    });
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
    const Point middle = CornerAverage(static_cast<int>(places.count), [&](int c) -> const Point& {
        return places.corner[static_cast<std::size_t>(c)];
    });
    const CellShape& shape = topology.Shape(cell);
    for (std::size_t face = 0; face < static_cast<std::size_t>(shape.faces); ++face) {
        const CornerTriangles triangles = SplitFace(topology, cell, face);
        for (std::size_t t = 0; t < triangles.count; ++t) {
            const auto& corner = triangles.corner[t];
            visit(Tetra{places.corner[shape.face[face][corner[0]]],
                        places.corner[shape.face[face][corner[2]]],
                        places.corner[shape.face[face][corner[1]]], middle});
        }
    }
}

}  // namespace qnl::kernel
