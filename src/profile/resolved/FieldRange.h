#pragma once

#include <limits>

#include "platform/MeshRecords.h"

namespace qnl::profile {

/// Nodes and cells of the mesh, 1-based; borrowed.
struct FieldMesh {
    const NodeRecord* nodes;
    const CellRecord* cells;
};

/// What a field is known not to go beyond between its nodes; nothing at first.
struct FieldRange {
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();
};

/// The range of temperatures of a solid that cools from outside. `temperatures` by node, 1-based; values that
/// are not finite are passed over.
///
/// Heat leaves through the surface, so no place is colder than the coldest node. The hottest place may well
/// lie between nodes. But where the field shows its top, no place is hotter than that: a node that stands,
/// with all nodes that share a cell with it, within a thousandth of the range below the hottest node lies in
/// melt that has not begun to cool. A wall of few cells does not show it: a front through 3 cells and a
/// parabola have the same nodal values up to a factor. `nodes` and `cells` are counts.
FieldRange RangeOfCooling(const FieldMesh& mesh, const double* temperatures, int nodes, int cells);

}  // namespace qnl::profile
