#pragma once

#include <vector>

namespace qnl::kernel {

/// Sorts distinct values ascending, without a branch that could be foreseen wrongly but at the end of a run.
/// `scratch` is overwritten; kept from call to call it spares allocations.
void SortAscending(std::vector<int>& values, std::vector<int>& scratch);

}  // namespace qnl::kernel
