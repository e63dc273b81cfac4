#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// ((p1 - p0) x (p2 - p0)) . (p3 - p0) / 6.
double TetraVolume(const Point& p0, const Point& p1, const Point& p2, const Point& p3);

/// Signed volume of a cell, mm3: of a tetra from its corners, of another cell the sum, by face, over the
/// tetras that join the corner average to each triangle of its faces.
double CellVolume(const MeshData& mesh, int cell);

struct TurnedCells {
    int wedges = 0;  ///< both orders of a wedge are common in files
    int others = 0;
};

/// Turns the cells of negative volume: the last two nodes of a tetra, the two ends of a wedge or hexa, the
/// second and fourth base node of a pyramid change places. `volumes` receives the volume of every cell as it
/// then is. Raises MeshFault for a cell whose volume is zero or not finite.
TurnedCells TurnNegativeCells(MeshData& mesh, std::vector<double>& volumes);

}  // namespace qnl::kernel
