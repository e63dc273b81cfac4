#pragma once

#include <string>

#include "page/PageTemplate.h"
#include "series/LoadedSeries.h"

namespace qnl::page {

/// Nodes whose profiles a page can show.
inline constexpr std::size_t kPageProfiles = 2000;

/// Raises InputProblem when a page of the series cannot be written there, or when the disk has less room than
/// it takes at the very least.
void CheckPagePlace(const PageTemplate& frame, const series::SeriesFiles& series, const std::string& path);

/// Writes one self-contained page that shows a series; a file of that name is replaced. Notes for people go
/// to standard error. False, with a fault recorded, when the page cannot be written.
[[nodiscard]] bool WriteReportPage(const PageTemplate& frame, const series::LoadedSeries& loaded,
                                   const std::string& path);

}  // namespace qnl::page
