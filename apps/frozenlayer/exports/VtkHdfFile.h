#pragma once

#include <string>

#include "exports/ExportFrames.h"
#include "exports/VtkXmlFile.h"

namespace qnl::exports {

/// The name of an array as a name in a HDF5 group, where "/" would part it: "[cm/s]" becomes "[cm per s]".
std::string HdfName(const std::string& name);

/// Writes the surface with the values of a frame as a VTKHDF grid of its faces; compressed arrays are
/// shuffled and deflated. False, with a fault recorded, when the file cannot be written.
[[nodiscard]] bool WriteHdfSurface(const std::string& path, const ExportSurface& surface,
                                   const ExportFrame& frame, Storage storage);

/// Writes the list of files by time as a JSON file series. As above.
[[nodiscard]] bool WriteFileSeries(const std::string& path, const std::vector<CollectionEntry>& entries);

}  // namespace qnl::exports
