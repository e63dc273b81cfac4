#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "interop/ForeignSeries.h"
#include "kernel/mesh/MeshData.h"

namespace qnl::interop {

/// Linear volume cells of a foreign mesh. Nodes that no such cell uses are left out.
struct SolidMesh {
    kernel::MeshData mesh;                  ///< mm, cells of positive volume; no labels, no regions
    std::vector<double> volumes;            ///< of the cells, mm3
    std::vector<std::int64_t> cellSource;   ///< foreign cell of each cell
    std::vector<std::int64_t> pointSource;  ///< foreign point of each node
    std::int64_t madeLinear = 0;            ///< cells that lost their mid-side nodes
    std::int64_t leftOut = 0;               ///< points, lines and surface cells

    /// The node of a foreign point; -1 for a point of no volume cell and for -1.
    int NodeOf(std::int64_t point) const {
        const auto own = std::lower_bound(pointSource.begin(), pointSource.end(), point);
        return own != pointSource.end() && *own == point ? static_cast<int>(own - pointSource.begin()) : -1;
    }
};

/// `millimetres` is the length unit of the foreign mesh. Raises ForeignProblem, in the name of `file`, for a
/// mesh without volume cells, polyhedra and other volume cells that have no linear counterpart (counted), a
/// coordinate that is not finite, a corner that a cell names twice, and a cell without volume.
SolidMesh BuildSolidMesh(const ForeignMesh& foreign, double millimetres, const std::string& file);

}  // namespace qnl::interop
