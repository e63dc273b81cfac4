#pragma once

#include <string>
#include <vector>

#include "exports/ExportFrames.h"

namespace qnl::exports {

/// Kinds of files that hold the surface.
enum class VtkKind { PolyData, UnstructuredGrid };

/// Writes the surface with the values of a frame: an XML head, then the arrays as they are in memory, or as
/// zlib streams of blocks. False, with a fault recorded, when the file cannot be written.
[[nodiscard]] bool WriteVtkSurface(const std::string& path, VtkKind kind, const ExportSurface& surface,
                                   const ExportFrame& frame, Storage storage);

/// Writes a polyline through the points, with values by point. As above.
[[nodiscard]] bool WriteVtkLines(const std::string& path, const ExportSurface& lines,
                                 const ExportFrame& frame);

/// One file of a collection.
struct CollectionEntry {
    double time = 0.0;
    std::string file;  ///< beside the collection
};

/// Writes the list of files by time that viewers open as one series. As above.
[[nodiscard]] bool WriteCollection(const std::string& path, const std::vector<CollectionEntry>& entries);

}  // namespace qnl::exports
