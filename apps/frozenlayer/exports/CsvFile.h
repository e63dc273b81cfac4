#pragma once

#include <string>
#include <vector>

#include "exports/ExportFrames.h"
#include "exports/VtkXmlFile.h"

namespace qnl::exports {

/// Writes one row a surface node: label, x, y, z, then the values of the frame, "nan" where there is none,
/// and its numbers, the same in every row. False, with a fault recorded, when the file cannot be written.
[[nodiscard]] bool WriteCsvSurface(const std::string& path, const ExportSurface& surface,
                                   const ExportFrame& frame);

/// Writes one row a file of a series: its name and its time. As above.
[[nodiscard]] bool WriteCsvTimes(const std::string& path, const std::string& timeLabel,
                                 const std::vector<CollectionEntry>& entries);

/// A text as one field of a row.
std::string CsvField(const std::string& text);

}  // namespace qnl::exports
