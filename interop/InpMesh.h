#pragma once

#include <memory>
#include <string>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// The mesh of an Abaqus-style input file: *NODE, *ELEMENT with solid elements of any order, and the sets of
/// elements of *ELSET and ELSET= as sets of cells; where elements are defined under several ELSET= names,
/// each cell under one, these are its blocks. The numbers of the nodes are an array of points. Elements
/// without volume are left out and told. Everything else of the file is passed over.
///
/// Raises ForeignProblem, with the line, for files that end too early, numbers that are none, come twice or
/// name nothing, unknown elements, and nodes that stand in other files or are to be generated.
std::unique_ptr<ForeignSeries> OpenInpMesh(const std::string& file);

}  // namespace qnl::interop
