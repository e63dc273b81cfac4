#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "imports/ImportRequest.h"
#include "interop/ForeignSeries.h"

namespace qnl::imports {

/// A named region and its number of cells.
struct RegionSize {
    std::string name;
    std::int64_t cells;
};

/// The regions that can be chosen: the blocks where there are several, then the sets.
std::vector<RegionSize> SizesOfRegions(const interop::ForeignSnapshot& snapshot);

/// Leaves of the cells those of the regions, blocks or sets, that the request chooses: those of --part, all
/// but those of --ignore. A mesh without a choice stays as it is. Raises ForeignProblem, with the list of the
/// regions, for several blocks without a choice, for a name that is not among them and when none is left.
void KeepChosenBlocks(const ImportRequest& request, interop::ForeignSnapshot& snapshot);

}  // namespace qnl::imports
