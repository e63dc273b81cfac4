#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <vector>

namespace qnl::profile {

/// Writes 32-bit signed integers, little-endian, in large blocks. A failed write shows when the stream is
/// closed.
class IntegerWriter {
public:
    explicit IntegerWriter(std::FILE* stream);

    void Put(int value) {
        if (filled_ == block_.size()) {
            Flush();
        }
        const auto bits = static_cast<std::uint32_t>(value);
        for (unsigned shift = 0; shift < 32; shift += 8) {
            block_[filled_++] = static_cast<unsigned char>(bits >> shift);
        }
    }
    /// Hands the last, partly filled block to the stream.
    void Flush();

private:
    std::FILE* stream_;
    std::vector<unsigned char> block_;
    std::size_t filled_ = 0;
};

/// Reads what IntegerWriter wrote.
class IntegerReader {
public:
    explicit IntegerReader(std::FILE* stream);

    /// None when fewer than four bytes are left.
    std::optional<int> Next() {
        if (end_ - next_ < 4 && !Refill()) {
            return std::nullopt;
        }
        std::uint32_t bits = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            bits |= static_cast<std::uint32_t>(block_[next_++]) << shift;
        }
        return static_cast<std::int32_t>(bits);
    }

private:
    /// Only the last block of a file is not full, so that what is left of a block is no integer.
    bool Refill();

    std::FILE* stream_;
    std::vector<unsigned char> block_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
};

}  // namespace qnl::profile
