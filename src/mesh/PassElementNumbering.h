#pragma once

#include "base/Id.h"

namespace qnl::mesh {

/// One numbering over faces and cells, for what a ray passes: elements 1 to `surfaces` are the faces,
/// larger ones the cells.
struct PassElementNumbering {
    int surfaces = 0;

    constexpr bool IsFace(PassElement element) const { return element.Value() <= surfaces; }
    /// Of an element that is a face.
    constexpr FaceId Face(PassElement element) const { return FaceId(element.Value()); }
    /// Of an element that is a cell.
    constexpr CellId Cell(PassElement element) const { return CellId(element.Value() - surfaces); }

    constexpr PassElement Element(FaceId face) const { return PassElement(face.Value()); }
    constexpr PassElement Element(CellId cell) const { return PassElement(surfaces + cell.Value()); }
};

}  // namespace qnl::mesh
