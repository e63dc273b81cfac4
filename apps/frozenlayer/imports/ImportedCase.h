#pragma once

#include <array>
#include <string>
#include <vector>

#include "imports/ImportArrays.h"
#include "imports/ImportRequest.h"
#include "interop/SolidMesh.h"

namespace qnl::imports {

/// Values per component and node, in the units of stage files; no component: not given.
using NodeComponents = std::vector<std::vector<float>>;

struct ImportedTime {
    std::string file;
    double seconds = 0.0;
    std::array<NodeComponents, kQuantities> values;  ///< by Quantity
};

/// Everything that was read from foreign files, in mm, degC and s.
struct ImportedCase {
    interop::SolidMesh solid;  ///< with labels where the files have usable ones, regions and tolerance
    std::array<ChosenArray, kQuantities> arrays;  ///< by Quantity
    std::string regionArray;                      ///< empty: all part
    std::vector<ImportedTime> times;              ///< ascending
    std::vector<std::string> warnings;            ///< sentences

    const ChosenArray& Chosen(Quantity quantity) const { return arrays[static_cast<std::size_t>(quantity)]; }
};

/// Reads all output times. Raises ForeignProblem for everything that keeps them from being used: no array of
/// temperatures (of displacements for a warp stage), meshes that differ between output times, too many values
/// that are not numbers, equal times, regions that are not there.
ImportedCase ReadForeignCase(ImportRequest& request);

/// Smallest and largest value of a quantity over all times and components; the first is larger when there is
/// none.
std::array<float, 2> QuantityRange(const ImportedCase& imported, Quantity quantity);

}  // namespace qnl::imports
