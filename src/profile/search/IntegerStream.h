#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
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
        for (unsigned k = 0; k < 4; ++k) {
            block_[filled_ + k] = static_cast<unsigned char>(bits >> (8 * k));
        }
        filled_ += 4;
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

    /// False when fewer than four bytes are left.
    bool Get(int& value) {
        if (end_ - next_ < 4 && !Refill()) {
            return false;
        }
        std::uint32_t bits = 0;
        for (unsigned k = 0; k < 4; ++k) {
            bits |= static_cast<std::uint32_t>(block_[next_ + k]) << (8 * k);
        }
        next_ += 4;
        value = static_cast<std::int32_t>(bits);
        return true;
    }

private:
    bool Refill();

    std::FILE* stream_;
    std::vector<unsigned char> block_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
};

}  // namespace qnl::profile
