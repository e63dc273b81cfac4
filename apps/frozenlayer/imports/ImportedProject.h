#pragma once

#include <optional>
#include <string>
#include <vector>

#include "imports/ImportRequest.h"
#include "imports/ImportedCase.h"

namespace qnl::imports {

/// The text of a material file and where it comes from.
struct ImportedMaterial {
    std::string fileName;
    std::string text;
    std::string origin;                       ///< in words
    std::optional<double> freezeTemperature;  ///< degC; none for a thermoset
};

/// The material of the request: a file that can be used, or a freeze temperature with a density of 1 g/cm3.
/// Raises InputProblem.
ImportedMaterial ChooseMaterial(const ImportRequest& request);

/// Raises InputProblem when something stands where the project is to be written, unless it is an empty folder
/// or, with `force`, a project folder.
void CheckProjectFolder(const std::string& folder, bool force);

/// What was written.
struct ImportedProject {
    std::string stageFile;              ///< of the base time
    std::vector<std::string> computed;  ///< one sentence per quantity that the files did not give
};

/// Writes the project folder: it appears complete or not at all, in place of a project that stood there.
/// Raises InputProblem.
ImportedProject WriteProject(const ImportRequest& request, const ImportedCase& imported,
                             const ImportedMaterial& material);

}  // namespace qnl::imports
