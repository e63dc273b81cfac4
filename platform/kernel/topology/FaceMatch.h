#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

/// Up to this number of cells a cell, its local face and the sense of the face fit 32 bits.
inline constexpr std::size_t kMostNarrowCells = std::size_t{1} << 28;

struct CellFace {
    int cell;
    std::uint8_t localFace;
};

struct FaceMatch {
    std::vector<CellFace> single;                  ///< faces with one owner, in no useful order
    std::vector<int> folded;                       ///< cells on the same side of a common face, ascending
    std::optional<std::array<int, 3>> overshared;  ///< the first three owners of a face with more than two
};

/// Fills the neighbour entries of `links` from the corner entries; entries of faces with one owner are left
/// as they are. Needs `links`, `start`, `shape`, `fileCell` and `fileNode`. Works through 48 bytes per tetra
/// (up to 96 per hexa), released at the end; through 64 (up to 144) for more than `narrowCells` cells.
FaceMatch MatchFaces(FaceTopology& topology, std::size_t narrowCells = kMostNarrowCells);

}  // namespace qnl::kernel
