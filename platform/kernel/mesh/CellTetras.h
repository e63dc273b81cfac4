#pragma once

#include <array>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// Triangles of a face as positions in the face's corner list, in the direction of the face.
struct CornerTriangles {
    std::size_t count;
    std::array<std::array<std::size_t, 3>, 2> corner;
};

/// The face itself when it has three corners; a quad is split by the diagonal through its corner of smallest
/// number, so that the two cells of an inner face agree. Both triangles begin at that corner. `number(c)` is
/// the node number, in the file's order, of corner c.
template <class Number>
CornerTriangles SplitCorners(std::size_t corners, Number number) {
    if (corners == 3) {
        return {1, {{{0, 1, 2}, {}}}};
    }
    std::size_t k = 0;
    for (std::size_t c = 1; c < 4; ++c) {
        k = number(c) < number(k) ? c : k;
    }
    return {2, {{{k, (k + 1) % 4, (k + 2) % 4}, {k, (k + 2) % 4, (k + 3) % 4}}}};
}

/// The same triangles by node index.
struct FaceTriangles {
    int count;
    std::array<std::array<int, 3>, 2> nodes;
};

inline FaceTriangles SplitFace(const int* face, int corners) {
    const CornerTriangles split =
        SplitCorners(static_cast<std::size_t>(corners), [face](std::size_t c) { return face[c]; });
    FaceTriangles triangles{static_cast<int>(split.count), {}};
    for (std::size_t t = 0; t < split.count; ++t) {
        for (std::size_t c = 0; c < 3; ++c) {
            triangles.nodes[t][c] = face[split.corner[t][c]];
        }
    }
    return triangles;
}

/// Corner nodes of a local face of a cell.
inline std::array<int, 4> FaceNodes(const CellShape& shape, const int* corners, int localFace) {
    const std::size_t face = static_cast<std::size_t>(localFace);
    std::array<int, 4> nodes{-1, -1, -1, -1};
    for (std::size_t c = 0; c < shape.faceCorners[face]; ++c) {
        nodes[c] = corners[shape.face[face][c]];
    }
    return nodes;
}

/// Mean of the corners, summed in corner order; `place(c)` is where corner c stands.
template <class Place>
Point CornerAverage(int count, Place place) {
    Point sum = place(0);
    for (int c = 1; c < count; ++c) {
        const Point& point = place(c);
        for (std::size_t a = 0; a < 3; ++a) {
            sum[a] += point[a];
        }
    }
    for (double& component : sum) {
        component /= count;
    }
    return sum;
}

}  // namespace qnl::kernel
