#pragma once

#include <string>
#include <vector>

#include "series/ResultSeries.h"

namespace qnl::exports {

/// Files to be written.
struct ExportRequest {
    series::SeriesWords results;
    std::string out;             ///< path that every file's name begins with
    std::string format = "pvd";  ///< one of ExportFormats()
    bool force = false;          ///< files of these names may be replaced
    bool compress = false;       ///< store arrays as zlib streams; not every format can
};

std::vector<std::string> ExportFormats();

/// Writes one file per output time, one with what does not depend on time, and a list of the files by time;
/// gives their paths. Notes for people go to standard error. Raises InputProblem, also for a file that is
/// there already; what could not be written is left out and recorded as a fault.
std::vector<std::string> ExportResults(const ExportRequest& request);

}  // namespace qnl::exports
