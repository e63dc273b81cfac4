#pragma once

#include <cstdint>
#include <cstdio>
#include <limits>
#include <string_view>

namespace qnl {

/// The end of a text, as a character.
constexpr int kEndOfText = -1;

/// Characters of a text in memory.
class TextSource {
public:
    explicit TextSource(std::string_view text) : text_(text) {}
    int Peek() const { return text_.empty() ? kEndOfText : static_cast<unsigned char>(text_.front()); }
    void Skip() { text_.remove_prefix(1); }

private:
    std::string_view text_;
};

/// Characters of a stream; none is taken that is not skipped.
class StreamSource {
public:
    explicit StreamSource(std::FILE* stream) : stream_(stream) {}
    int Peek() {
        const int c = std::getc(stream_);
        return c == EOF ? kEndOfText : std::ungetc(c, stream_);
    }
    void Skip() { std::getc(stream_); }

private:
    std::FILE* stream_;
};

inline bool IsSpace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool IsDigit(int c) {
    return c >= '0' && c <= '9';
}

/// Reads a decimal integer with an optional sign after any white space and leaves the source behind its
/// last digit. False when there is none, one that does not fit 32 bits, or a hexadecimal one; `value` is
/// unchanged then.
template <typename Source>
bool ScanInteger(Source& source, int& value) {
    constexpr std::int64_t kBeyond = std::int64_t{1} << 40;
    while (IsSpace(source.Peek())) {
        source.Skip();
    }
    const bool negative = source.Peek() == '-';
    if (negative || source.Peek() == '+') {
        source.Skip();
    }
    if (!IsDigit(source.Peek())) {
        return false;
    }
    std::int64_t number = 0;
    int digits = 0;
    for (; IsDigit(source.Peek()); source.Skip()) {
        number = number < kBeyond ? 10 * number + (source.Peek() - '0') : kBeyond;
        digits = digits < 2 ? digits + 1 : digits;
    }
    const int next = source.Peek();
    const bool hexadecimal = digits == 1 && number == 0 && (next == 'x' || next == 'X');
    number = negative ? -number : number;
    if (hexadecimal || number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

}  // namespace qnl
