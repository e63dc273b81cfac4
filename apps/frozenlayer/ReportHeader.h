#pragma once

#include <string>
#include <vector>

#include "ReportItems.h"
#include "SeriesResults.h"

namespace qnl {

/// The header of the results page as JSON, safe to stand in an HTML element.
std::string ReportHeader(const SeriesResults& loaded, const std::vector<ReportItem>& items,
                         const ValueRange& profileRange);

}  // namespace qnl
