#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// The entry `dimensions` of a field's header, "dimensions [0 1 -1 0 0 0 0];", with five to seven exponents
/// or none at all. Nothing when the text has no such entry, or one in other words than numbers.
std::optional<Dimensions> ParseFoamDimensions(std::string_view header);

/// The dimensions that an OpenFOAM case tells of a field at a time: those in the header of the field's file,
/// plain or packed by gzip, in the folder of the time or in that of a region there. `caseFile` stands in the
/// case. Nothing when the file is not found or does not tell them in its first 64 KiB.
std::optional<Dimensions> ReadFoamDimensions(const std::string& caseFile, double seconds,
                                             const std::string& field);

}  // namespace qnl::interop
