#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// The mesh in the order in which rays meet it: cells along a space-filling curve, nodes in the order in
/// which those cells first use them, nodes of no cell left out. Holds copies of everything, so the
/// MeshData it was built from is no longer needed. Indices are 0-based; "cell" and "node" mean the order
/// here, the order of the file stands in `fileCell` and `fileNode`.
struct FaceTopology {
    /// Padded so that a node never straddles two cache lines.
    struct alignas(32) Node {
        Point place;
    };

    std::vector<Node> nodes;
    std::vector<int> fileNode;
    std::vector<int> fileCell;
    /// Per cell its corner nodes, then one entry per local face: the neighbour cell behind it or, on the
    /// boundary, ~f with the 0-based boundary face f.
    std::vector<int> links;
    std::vector<std::size_t> start;   ///< first entry of a cell in `links`; empty when all are tetras
    std::vector<std::uint8_t> shape;  ///< index of a cell in kCellShapes; empty when all are tetras
    std::vector<int> foldedCells;     ///< cells that lie on the same side of a common face, ascending
    int boundaryFaces = 0;

    static constexpr std::size_t kTetraLinks = 8;

    int Cells() const { return static_cast<int>(fileCell.size()); }
    bool AllTetra() const { return shape.empty(); }
    bool IsTetra(int cell) const { return shape.empty() || shape[static_cast<std::size_t>(cell)] == 0; }
    const CellShape& Shape(int cell) const {
        return kCellShapes[shape.empty() ? 0 : shape[static_cast<std::size_t>(cell)]];
    }
    std::size_t Start(int cell) const {
        const auto c = static_cast<std::size_t>(cell);
        return start.empty() ? kTetraLinks * c : start[c];
    }
    const int* Corners(int cell) const { return links.data() + Start(cell); }
    const int* Neighbours(int cell) const { return Corners(cell) + Shape(cell).corners; }
    void SetNeighbour(int cell, int localFace, int value) {
        links[Start(cell) + static_cast<std::size_t>(Shape(cell).corners + localFace)] = value;
    }
    const Point& Place(int node) const { return nodes[static_cast<std::size_t>(node)].place; }
};

struct TopologyResult {
    FaceTopology topology;
    std::vector<BoundaryFace> boundary;  ///< by owning cell, then local face; all in the file's numbering
};

/// Finds for every face of every cell the cell behind it. Two faces are the same when they have the same
/// corner nodes. The mesh must have finite coordinates and corner indices in range.
/// Raises MeshFault for a face with three or more owners, naming them, and for more than 2^31 - 1 boundary
/// faces and cells together, beyond which a pass element has no number.
/// The result does not depend on the number of threads. Cost linear in the number of cells.
TopologyResult BuildFaceTopology(const MeshData& mesh);

}  // namespace qnl::kernel
