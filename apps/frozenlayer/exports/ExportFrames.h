#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "series/LoadedSeries.h"

namespace qnl::exports {

/// Values of the surface nodes, `components` per node, node after node.
struct ExportArray {
    std::string name;  ///< as ExportLabel makes it
    int components = 1;
    std::variant<std::vector<float>, std::vector<int>> values;
};

/// One number that holds for a whole file.
struct ExportNumber {
    std::string name;
    double value = 0.0;
};

/// What goes into one file: the values of one output time, or those that do not depend on time.
struct ExportFrame {
    std::vector<ExportNumber> numbers;
    std::vector<ExportArray> arrays;
};

/// The surface as it is exported: all nodes of the boundary, its faces with three or four corners.
struct ExportSurface {
    std::vector<int> labels;
    std::vector<std::array<float, 3>> points;  ///< mm
    std::vector<std::int64_t> corners;         ///< of all faces, surface nodes from 0
    std::vector<std::int64_t> ends;            ///< for each face, the number of corners up to its end
};

/// Name and unit of an array or a number, the same in every format: "/", which would part a name in HDF5, is
/// "per", as in "Average velocity [cm per s]".
std::string ExportLabel(const std::string& name, const std::string& unit);

/// The name of one component of a vector: "Average velocity, x [cm per s]". `component` counts from 0.
std::string ComponentName(const ExportArray& vector, std::size_t component);

/// How the arrays of a file are stored.
enum class Storage { Uncompressed, Compressed };

/// Endings of the names of files: "_0001" for the first output time, and that of what does not depend on
/// time.
std::string TimeSuffix(std::size_t time);
inline constexpr const char* kStaticSuffix = "_static";

/// The type number of each face as VTK counts types: 5 triangle, 9 quad.
std::vector<std::uint8_t> VtkCellTypes(const ExportSurface& surface);

ExportSurface SurfaceForExport(const series::LoadedSeries& loaded);

/// The items of one output time, vectors where there are items of all three components; a value that a node
/// does not have is not a number, and its status tells so.
ExportFrame TimeFrame(const series::LoadedSeries& loaded, std::size_t time);

/// What does not depend on time: wall, inward direction, opposite point, time to freeze, last regions to
/// freeze.
ExportFrame StaticFrame(const series::LoadedSeries& loaded);

}  // namespace qnl::exports
