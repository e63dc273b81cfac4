#pragma once

#include <optional>

#include "hdf5/Hdf5.h"
#include "platform/ResultOrigin.h"

/// What a result was made from, as attributes of one group of its file: `version`, `mode`,
/// `analysis_code`, `diagnostics`, and for each input `<role>` (its name), `<role>_size` (int64, -1 without a
/// file) and
/// `<role>_xxh3` (16 hexadecimal digits).
namespace qnl::results {

/// Raises hdf5::Hdf5Error.
void WriteOrigin(const ResultOrigin& origin, hdf5::OutputFile& file);

/// None when the file does not tell it, or not in this way.
std::optional<ResultOrigin> ReadOrigin(const hdf5::InputFile& file);

}  // namespace qnl::results
