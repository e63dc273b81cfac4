#include "text/Deflate.h"

#include <zlib.h>

#include <stdexcept>

namespace qnl::text {

std::vector<unsigned char> Deflate(const void* bytes, std::size_t count) {
    uLongf length = compressBound(static_cast<uLong>(count));
    std::vector<unsigned char> packed(length);
    if (compress2(packed.data(), &length, static_cast<const Bytef*>(bytes), static_cast<uLong>(count),
                  kDeflateLevel) != Z_OK) {
        throw std::runtime_error("an array cannot be compressed: too little memory");
    }
    packed.resize(length);
    return packed;
}

}  // namespace qnl::text
