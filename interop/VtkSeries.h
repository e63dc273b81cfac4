#pragma once

#include <memory>
#include <string>
#include <vector>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// Files that VTK reads; every one of a known extension. Raises ForeignProblem, also in builds without VTK.
std::unique_ptr<ForeignSeries> OpenVtkSeries(const std::vector<std::string>& files);

/// Whether the extension is that of a format which VTK reads; false in builds without VTK.
bool IsVtkFormat(const std::string& file);

}  // namespace qnl::interop
