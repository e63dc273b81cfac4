#pragma once

#include <memory>
#include <string>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// The mesh of a Gmsh file in its text forms 2 and 4.1 (Gmsh reference manual, "MSH file format"): volume
/// elements of first and second order, the numbers of the nodes as array of points, those of the volumes and
/// of their first physical groups as arrays of cells "CellEntityIds" and "PhysicalIds". Physical groups of
/// volumes with names are blocks where there are several and each cell is in one, else sets of cells. Lower
/// elements and values in the file are passed over.
///
/// Raises ForeignProblem, with the line, for binary files and other versions, files that end too early,
/// counts that do not hold, numbers that come twice or name nothing, and unknown elements.
std::unique_ptr<ForeignSeries> OpenMshMesh(const std::string& file);

}  // namespace qnl::interop
