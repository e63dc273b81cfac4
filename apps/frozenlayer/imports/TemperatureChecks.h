#pragma once

#include <optional>
#include <string>
#include <vector>

#include "imports/ImportRequest.h"
#include "imports/ImportedCase.h"

namespace qnl::imports {

/// Raises ForeignProblem when temperatures, by node in degC, cannot be some: below absolute zero or above any
/// polymer, as markers of missing values are. `array` and `file` are named.
void CheckTemperatures(const std::vector<float>& values, const std::string& array, const std::string& file);

/// What makes the temperatures of a case doubtful, one sentence each: another unit, the same value everywhere
/// and always, whole numbers only in an array that an option names, and a freeze temperature (degC; none: not
/// known) that none of them crosses. Each names the option that helps.
std::vector<std::string> TemperatureWarnings(const ImportRequest& request, const ImportedCase& imported,
                                             std::optional<double> freezeTemperature);

}  // namespace qnl::imports
