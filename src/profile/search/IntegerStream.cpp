#include "profile/search/IntegerStream.h"

namespace qnl::profile {

namespace {

/// A multiple of the size of an integer, so that a block ends between two of them.
constexpr std::size_t kBlockBytes = std::size_t{1} << 18;

}  // namespace

IntegerWriter::IntegerWriter(std::FILE* stream) : stream_(stream), block_(kBlockBytes) {}

void IntegerWriter::Flush() {
    std::fwrite(block_.data(), 1, filled_, stream_);
    filled_ = 0;
}

IntegerReader::IntegerReader(std::FILE* stream) : stream_(stream), block_(kBlockBytes) {}

bool IntegerReader::Refill() {
    next_ = 0;
    end_ = std::fread(block_.data(), 1, block_.size(), stream_);
    return end_ >= 4;
}

}  // namespace qnl::profile
