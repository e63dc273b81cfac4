#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qnl::interop {

/// Bytes that the values of a classic netCDF file (CDF-1, CDF-2, CDF-5) reach to, as its header tells; the
/// library reads zeros behind the end of a file. Nothing for another file and one that ends within its
/// header.
std::optional<std::uint64_t> AnnouncedNetcdfLength(const std::string& file);

}  // namespace qnl::interop
