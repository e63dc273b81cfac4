#pragma once

#include <array>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// Triangles of a face, by node index, in the direction of the face.
struct FaceTriangles {
    int count;
    std::array<std::array<int, 3>, 2> nodes;
};

/// The face itself when it has three corners; a quad is split by the diagonal through its corner of smallest
/// node index, so that the two cells of an inner face agree. Both triangles begin at that corner.
inline FaceTriangles SplitFace(const int* face, int corners) {
    if (corners == 3) {
        return {1, {{{face[0], face[1], face[2]}, {}}}};
    }
    int first = 0;
    for (int c = 1; c < 4; ++c) {
        first = face[c] < face[first] ? c : first;
    }
    const int a = face[first];
    const int b = face[(first + 1) % 4];
    const int c = face[(first + 2) % 4];
    const int d = face[(first + 3) % 4];
    return {2, {{{a, b, c}, {a, c, d}}}};
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

/// Mean of the corners, summed in corner order.
inline Point CornerAverage(const MeshData& mesh, const int* corners, int count) {
    Point sum = mesh.points[static_cast<std::size_t>(corners[0])];
    for (int c = 1; c < count; ++c) {
        const Point& point = mesh.points[static_cast<std::size_t>(corners[c])];
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
