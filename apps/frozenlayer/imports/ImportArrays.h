#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "imports/ImportRequest.h"
#include "interop/ForeignSeries.h"

namespace qnl::imports {

/// What foreign arrays can stand for.
enum class Quantity { Temperature, Velocity, Displacement, CoolingTime, Density, Shrinkage, Pressure };
inline constexpr std::size_t kQuantities = 7;

/// Everything about a quantity: option and member of the request that name its array, number of components,
/// unit after import, and the names that are looked for, in lower case without blanks and punctuation, best
/// first.
struct QuantityRule {
    Quantity quantity;
    const char* name;
    const char* option;
    std::string ImportRequest::*request;
    int components;
    const char* unit;
    std::array<std::string_view, 9> names;
};

inline constexpr std::array<QuantityRule, kQuantities> kQuantityRules{{
    {Quantity::Temperature,
     "temperature",
     "--temperature",
     &ImportRequest::temperature,
     1,
     "°C",
     {"temperature", "temp", "t", "ndtemp", "nt11", "nt", "temperatures", "nodaltemperature", "tempc"}},
    {Quantity::Velocity,
     "velocity",
     "--velocity",
     &ImportRequest::velocity,
     3,
     "cm/s",
     {"velocity", "velocities", "vel", "u", "v", "flowvelocity"}},
    {Quantity::Displacement,
     "displacement",
     "--displacement",
     &ImportRequest::displacement,
     3,
     "mm",
     {"displacement", "displacements", "disp", "displ", "depl", "u"}},
    {Quantity::CoolingTime,
     "cooling time",
     "--cooling-time",
     &ImportRequest::coolingTime,
     1,
     "s",
     {"coolingtime", "timetofreeze", "freezetime"}},
    {Quantity::Density, "density", "--density", &ImportRequest::density, 1, "g/cm³", {}},
    {Quantity::Shrinkage, "volume shrinkage", "--volume-shrinkage", &ImportRequest::shrinkage, 1, "%", {}},
    {Quantity::Pressure, "pressure", "--pressure-array", &ImportRequest::pressureArray, 1, "MPa", {}},
}};

/// Why an array was taken.
enum class ChosenBy { Nothing, Option, Name };

struct ChosenArray {
    ChosenBy by = ChosenBy::Nothing;
    std::string name;
    bool onCells = false;
    bool onBoundary = false;  ///< of cells, with values on faces of the boundary too
};

/// The array for a quantity among those of a snapshot; nothing chosen when no name fits. Raises
/// ForeignProblem when the named one is not there (those that are there are listed, the nearest name first)
/// or has another number of components.
ChosenArray ChooseArray(const QuantityRule& rule, const ImportRequest& request,
                        const interop::ForeignSnapshot& snapshot);

/// Arrays of one component that have a usual name of a density, which is never looked for, in file order.
std::vector<std::string> NamesOfDensities(const interop::ForeignSnapshot& snapshot);

/// The array of that name on points, else on cells; null when there is none.
const interop::ForeignArray* FindArray(const interop::ForeignSnapshot& snapshot, const std::string& name);

/// The array of that name on cells, of one component; null when there is none.
const interop::ForeignArray* FindCellArray(const interop::ForeignSnapshot& snapshot, const std::string& name);

/// " of ... in the file": the names of the arrays there, the nearest to `wanted` first.
std::string ListArrays(const interop::ForeignSnapshot& snapshot, const std::string& wanted);

}  // namespace qnl::imports
