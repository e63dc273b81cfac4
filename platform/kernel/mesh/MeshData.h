#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "kernel/mesh/CellShapes.h"

namespace qnl::kernel {

using Point = std::array<double, 3>;

/// The mesh as read, in the file's order, everything 0-based. Cells have been turned to positive volume.
struct MeshData {
    std::vector<Point> points;            ///< mm
    bool singlePrecision = false;         ///< the file's points are float32
    std::vector<std::uint8_t> cellTypes;  ///< VTK numbers, each known to FindCellShape
    std::vector<std::int64_t> offsets;    ///< cells + 1 entries into connectivity
    std::vector<int> connectivity;        ///< corner nodes
    std::vector<std::int8_t> regions;     ///< 0 part, 1 runner, 2 special; one per cell
    std::vector<int> labels;              ///< one per node; empty: the label is the index + 1
    std::optional<double> geomTolerance;  ///< mm, when the file sets it

    int Cells() const { return static_cast<int>(cellTypes.size()); }
    int Nodes() const { return static_cast<int>(points.size()); }
    const int* Corners(int cell) const {
        return connectivity.data() + offsets[static_cast<std::size_t>(cell)];
    }
    const CellShape& Shape(int cell) const {
        return *FindCellShape(cellTypes[static_cast<std::size_t>(cell)]);
    }
};

/// A face with one owner; its corners in the order of the owner's local face, 0-based.
struct BoundaryFace {
    int cell;
    std::uint8_t localFace;
    std::uint8_t corners;
    std::array<int, 4> nodes;  ///< the fourth is -1 for a triangle
};

}  // namespace qnl::kernel
