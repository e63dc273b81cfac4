#pragma once

#include <string>
#include <vector>

#include "page/ReportItems.h"
#include "series/LoadedSeries.h"

namespace qnl::page {

/// The header of the results page as JSON, safe to stand in an HTML element.
std::string ReportHeader(const series::LoadedSeries& loaded, const std::vector<ReportItem>& items,
                         const ValueRange& profileRange);

}  // namespace qnl::page
