#pragma once

#include <array>
#include <string>
#include <vector>

#include "series/SeriesFiles.h"

namespace qnl::profiles {

/// Profiles to be written.
struct ProbeRequest {
    series::SeriesSelection results;
    std::vector<int> labels;                    ///< of surface nodes
    std::vector<std::array<double, 3>> points;  ///< mm; each stands for the nearest node with a profile
    std::string out;                            ///< name without extension; empty: rows to standard output
    bool force = false;                         ///< files of these names may be replaced
    bool nearest = false;                       ///< points may be anywhere
};

/// Empty for a name that the files may begin with, else what is wrong with it.
std::string CheckProbeName(const std::string& name);

/// Writes the temperatures along the inward rays at every output time as rows of numbers, and, with a name,
/// as polylines as well; gives the files written. Notes for people go to standard error. Raises InputProblem.
std::vector<std::string> ProbeRays(const ProbeRequest& request);

}  // namespace qnl::profiles
