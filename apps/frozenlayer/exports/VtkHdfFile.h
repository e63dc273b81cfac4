#pragma once

#include <string>

#include "exports/ExportFrames.h"
#include "exports/VtkXmlFile.h"

namespace qnl::exports {

/// Writes the surface with the values of a frame as a VTKHDF grid of its faces; compressed arrays are
/// shuffled and deflated. False, with a fault recorded, when the file cannot be written.
[[nodiscard]] bool WriteHdfSurface(const std::string& path, const ExportSurface& surface,
                                   const ExportFrame& frame, Storage storage);

/// Writes the list of files by time as a JSON file series. As above.
[[nodiscard]] bool WriteFileSeries(const std::string& path, const std::vector<CollectionEntry>& entries);

}  // namespace qnl::exports
