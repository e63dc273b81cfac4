#pragma once

#include <memory>
#include <string>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// Results of CalculiX, an .frd file in its short, long or binary form (cgx manual, "Result Format"): the one
/// mesh of the file, the node numbers as array of points, and every nodal result of every output time but
/// those of frequencies. Nodes that a result leaves out have the value "not a number".
///
/// Reads the whole file and raises ForeignProblem, with the line, for a file that ends too early, counts that
/// do not hold, numbers that come twice or name nothing, and elements of an unknown type.
std::unique_ptr<ForeignSeries> OpenFrdSeries(const std::string& file);

}  // namespace qnl::interop
