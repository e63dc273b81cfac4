#pragma once

#include <string>
#include <vector>

#include "series/LoadedSeries.h"

namespace qnl::exports {

/// Files to be written.
struct ExportRequest {
    std::string out;        ///< path that every file's name begins with
    std::string format;     ///< one of ExportFormats(); empty: that of the ending of `out`, pvd without one
    bool force = false;     ///< files of these names may be replaced
    bool compress = false;  ///< store arrays as zlib streams; not every format can
};

std::vector<std::string> ExportFormats();

/// Empty for a name that exported files may begin with, else what is wrong with it.
std::string CheckExportName(const std::string& name);

/// Raises InputProblem for an export of `times` output times that cannot be made: of an unknown format, or
/// another than the ending of the name tells, with options that do not go together, or over files that are
/// there already.
void CheckExport(const ExportRequest& request, std::size_t times);

/// Raises InputProblem when the files cannot be written where they belong, or when the disk has less room
/// than they take at the very least.
void CheckExportPlace(const ExportRequest& request, const series::SeriesFiles& series);

/// Writes one file per output time, one with what does not depend on time, and a list of the files by time;
/// gives their paths. Notes for people go to standard error. Raises InputProblem as CheckExport does; what
/// could not be written is left out and recorded as a fault; after an interrupt what is finished is given.
std::vector<std::string> ExportSeries(const series::LoadedSeries& loaded, const ExportRequest& request);

}  // namespace qnl::exports
