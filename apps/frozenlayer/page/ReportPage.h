#pragma once

#include <string>

#include "series/ResultSeries.h"

namespace qnl::page {

/// A page to be written.
struct ReportRequest {
    series::SeriesWords results;
    std::string out;  ///< path of the page
};

/// Writes one self-contained page that shows the results of a series; a file of that name is replaced. Notes
/// for people go to standard error. Raises InputProblem; false, with a fault recorded, when the page cannot
/// be written.
[[nodiscard]] bool WriteReportPage(const ReportRequest& request);

}  // namespace qnl::page
