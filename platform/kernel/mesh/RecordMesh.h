#pragma once

#include "kernel/mesh/MeshData.h"
#include "platform/MeshRecords.h"

namespace qnl::kernel {

/// The mesh by its published records, 1-based; borrowed.
struct RecordMesh {
    const NodeRecord* nodes;
    const CellRecord* cells;
    int nodeCount;
    int cellCount;

    Point Place(int node) const { return {nodes[node].x, nodes[node].y, nodes[node].z}; }
    /// 0-based array of the cell's corner nodes.
    const int* Corners(int cell) const { return cells[cell].nodes + 1; }
    int CornerCount(int cell) const { return cells[cell].nNode; }
    /// The number of corners tells the shape.
    const CellShape& Shape(int cell) const {
        std::size_t s = 0;
        while (kCellShapes[s].corners != cells[cell].nNode) {
            ++s;
        }
        return kCellShapes[s];
    }
};

}  // namespace qnl::kernel
