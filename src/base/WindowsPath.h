#pragma once

#include <string>
#include <string_view>

namespace qnl {

/// Operations on Windows-style path texts, where "\" separates folders.

/// The path up to, and without, its last ".". A path without one raises std::out_of_range.
std::string CutExtension(std::string_view path);

/// The path with everything from its last "." on replaced. A path without "." raises std::out_of_range.
std::string ReplaceExtension(std::string_view path, std::string_view extension);

/// The path up to, and without, its last "\". A path without one raises std::out_of_range.
std::string CutFileName(std::string_view path);

/// Name of an intermediate output time: stem, "_000" (index 0 or less), "_00" (1 to 9), "_0" (10 to 99)
/// or "_", the index in decimal, extension. A name without "." raises std::out_of_range.
std::string IndexedName(std::string_view name, int index);

}  // namespace qnl
