#pragma once

#include <string>
#include <vector>

#include "imports/ImportArrays.h"
#include "imports/ImportRequest.h"

namespace qnl::imports {

/// Value after import = factor * value in the file + offset.
struct Conversion {
    double factor = 1.0;
    double offset = 0.0;
};

/// Gives the request the units that it leaves open: those of SI, or mm, degC, MPa and g/cm3. A unit of
/// velocities stays open where there is none: it is the length unit per second.
void ChooseUnits(bool isSi, ImportRequest& request);

/// Millimetres of the request's length unit.
double LengthUnit(const ImportRequest& request);

/// To the units of stage files.
Conversion ConversionOf(Quantity quantity, const ImportRequest& request);

/// Why an array cannot hold a quantity, in one sentence: the file tells other dimensions of it. Empty when it
/// tells those of the quantity, or none.
std::string ProblemOfDimensions(const QuantityRule& rule, const interop::ForeignArray& array,
                                const std::string& file);

/// What makes densities from `low` to `high`, g/cm3, doubtful: that polymers have others, as another unit
/// would explain. Empty when nothing does.
std::string DoubtOfDensity(const ImportRequest& request, double low, double high);

}  // namespace qnl::imports
