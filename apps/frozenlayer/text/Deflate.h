#pragma once

#include <cstddef>
#include <vector>

namespace qnl::text {

inline constexpr int kDeflateLevel = 6;

/// The bytes as a zlib stream. Raises std::runtime_error without enough memory.
std::vector<unsigned char> Deflate(const void* bytes, std::size_t count);

}  // namespace qnl::text
