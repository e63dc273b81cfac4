#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstdio>
#include <vector>

#include "platform/HostFiles.h"
#include "platform/ResultOrigin.h"

namespace qnl {

FileDigest DigestOf(std::string_view path) {
    constexpr std::size_t kBlock = std::size_t{1} << 18;
    const HostFile file(path, "rb");
    XXH3_state_t state;
    XXH3_INITSTATE(&state);
    if (!file || XXH3_64bits_reset(&state) == XXH_ERROR) {
        return {};
    }
    std::vector<char> block(kBlock);
    FileDigest digest{0, 0};
    while (const std::size_t bytes = std::fread(block.data(), 1, block.size(), file.Get())) {
        XXH3_64bits_update(&state, block.data(), bytes);
        digest.size += static_cast<std::int64_t>(bytes);
    }
    if (std::ferror(file.Get()) != 0) {
        return {};
    }
    digest.hash = XXH3_64bits_digest(&state);
    return digest;
}

}  // namespace qnl
