#pragma once

#include <array>
#include <cstdint>

namespace qnl::kernel {

/// Solid cell shapes, by their VTK cell type numbers.
enum class CellType : std::uint8_t { Tetra = 10, Hexa = 12, Wedge = 13, Pyramid = 14 };

/// Local faces of a cell shape: 0-based corners, outward for a cell of positive volume.
struct CellShape {
    CellType type;
    const char* name;
    int corners;
    int faces;
    std::array<std::uint8_t, 6> faceCorners;          ///< corner count of each face
    std::array<std::array<std::uint8_t, 4>, 6> face;  ///< corners of each face
};

/// A wedge has positive volume when (p1-p0) x (p2-p0) . (p3-p0) > 0, a tetra likewise.
inline constexpr std::array<CellShape, 4> kCellShapes{{
    {CellType::Tetra,
     "tetra",
     4,
     4,
     {3, 3, 3, 3, 0, 0},
     {{{0, 2, 1, 0}, {0, 1, 3, 0}, {1, 2, 3, 0}, {0, 3, 2, 0}, {}, {}}}},
    {CellType::Hexa,
     "hexa",
     8,
     6,
     {4, 4, 4, 4, 4, 4},
     {{{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}}},
    {CellType::Wedge,
     "wedge",
     6,
     5,
     {3, 3, 4, 4, 4, 0},
     {{{0, 2, 1, 0}, {3, 4, 5, 0}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {}}}},
    {CellType::Pyramid,
     "pyramid",
     5,
     5,
     {4, 3, 3, 3, 3, 0},
     {{{0, 3, 2, 1}, {0, 1, 4, 0}, {1, 2, 4, 0}, {2, 3, 4, 0}, {3, 0, 4, 0}, {}}}},
}};

/// Shape of a VTK cell type; null for a type that is not a supported solid cell.
constexpr const CellShape* FindCellShape(int vtkType) {
    for (const CellShape& shape : kCellShapes) {
        if (static_cast<int>(shape.type) == vtkType) {
            return &shape;
        }
    }
    return nullptr;
}

}  // namespace qnl::kernel
