#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qnl::layout {

/// The log that an analysis keeps of its intermediate output times, in the folder of its run. It is complete
/// when it holds "[EOF]" within one line; a line counts up to 254 bytes, and the rest of a longer one is the
/// next line.

inline constexpr std::string_view kMarkerLogName = "QNLIntermediateOutputTime.log";

enum class MarkerLog { Missing, Incomplete, Complete };

/// Looks at the log at `path`. Missing stands for one that cannot be opened or read.
MarkerLog LookAtMarkerLog(const std::string& path);

/// The text of a complete log of these times, s, as decimal numbers.
std::string MarkerLogText(const std::vector<std::string>& times);

}  // namespace qnl::layout
