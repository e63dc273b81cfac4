#pragma once

namespace qnl::mesh {

/// One numbering over faces and cells: ids 1 to `surfaces` are faces, larger ones cells.
struct PassElementNumbering {
    int surfaces = 0;

    constexpr bool IsFace(int id) const { return id <= surfaces; }
    constexpr int FaceIndex(int id) const { return id; }
    constexpr int CellIndex(int id) const { return id - surfaces; }
};

}  // namespace qnl::mesh
