#include "base/TokenReader.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <system_error>
#include <utility>

#include "platform/Faults.h"

namespace qnl {
namespace {

// White space of the C locale.
bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
// The value of a digit; above 9 for any other character.
unsigned DigitOf(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}
bool IsDigit(char c) {
    return DigitOf(c) <= 9;
}
bool IsHexMark(char c) {
    return c == 'x' || c == 'X';
}

// The text ends with a NUL character, which is no blank, digit, mark or sign: scanning needs no bound.
const char* PastBlanks(const char* p) {
    while (IsBlank(*p)) {
        ++p;
    }
    return p;
}

bool TakeSign(const char*& p) {
    const bool negative = *p == '-';
    p += negative || *p == '+' ? 1 : 0;
    return negative;
}

/// An unsigned decimal number as it stands in the text.
struct Decimal {
    const char* begin = nullptr;
    const char* end = nullptr;
    std::uint64_t mantissa = 0;       ///< all digits; meaningless beyond 19 of them
    std::int64_t digits = 0;          ///< leading zeros included
    std::int64_t fractionDigits = 0;  ///< of these, behind the point
    std::int64_t exponent = 0;        ///< as written
};

/// Appends the digits at `p` to the mantissa and gives their number.
std::int64_t TakeDigits(const char*& p, std::uint64_t& mantissa) {
    const char* const begin = p;
    std::uint64_t value = mantissa;
    for (unsigned digit = DigitOf(*p); digit <= 9; digit = DigitOf(*++p)) {
        value = value * 10 + digit;
    }
    mantissa = value;
    return p - begin;
}

constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 40;

/// A number of any length; one that is too large for any use becomes kTooLarge.
std::uint64_t LongInteger(const char* begin, const char* end) {
    return std::accumulate(begin, end, std::uint64_t{0}, [](std::uint64_t value, char digit) {
        return std::min(value * 10 + DigitOf(digit), kTooLarge);
    });
}

/// The number of the digits at `p`, likewise.
std::int64_t TakeInteger(const char*& p) {
    constexpr std::int64_t kDigitsThatFit = 18;
    const char* const begin = p;
    std::uint64_t value = 0;
    if (TakeDigits(p, value) > kDigitsThatFit) {
        value = LongInteger(begin, p);
    }
    return static_cast<std::int64_t>(std::min(value, kTooLarge));
}

/// Takes an exponent; false when it has no digits.
bool TakeExponent(const char*& p, std::int64_t& exponent) {
    const bool negative = TakeSign(p);
    if (!IsDigit(*p)) {
        return false;
    }
    const std::int64_t value = TakeInteger(p);
    exponent = negative ? -value : value;
    return true;
}

/// Splits the unsigned number at `p`; false when there is none. `p` moves to where scanning stopped.
bool TakeDecimal(const char*& p, Decimal& number) {
    number.begin = p;
    number.digits = TakeDigits(p, number.mantissa);
    if (*p == '.') {
        ++p;
        number.fractionDigits = TakeDigits(p, number.mantissa);
        number.digits += number.fractionDigits;
    } else if (IsHexMark(*p) && number.digits == 1 && *number.begin == '0') {
        return false;
    }
    if (number.digits == 0) {
        return false;
    }
    if (*p == 'e' || *p == 'E') {
        ++p;
        if (!TakeExponent(p, number.exponent)) {
            return false;
        }
    }
    number.end = p;
    return true;
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr double kSigns[] = {1.0, -1.0};
constexpr bool kPlainDoubles = FLT_EVAL_METHOD == 0;  // no excess precision in between
constexpr std::int64_t kExactPower = 22;
constexpr std::int64_t kMantissaDigits = 19;
constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53;

/// Where mantissa and power of ten are both exact as doubles, one operation rounds correctly (W. D.
/// Clinger, How to read floating point numbers accurately, 1990).
bool ConvertExactly(const Decimal& number, double& value) {
    const std::int64_t power = number.exponent - number.fractionDigits;
    if (!kPlainDoubles || number.digits > kMantissaDigits || number.mantissa > kExactMantissa ||
        power > kExactPower || power < -kExactPower) {
        return false;
    }
    const auto mantissa = static_cast<double>(number.mantissa);
    value = power < 0 ? mantissa / kPowersOfTen[-power] : mantissa * kPowersOfTen[power];
    return true;
}

/// Whether the number is 0 or less than 1.
bool IsBelowOne(const Decimal& number) {
    std::int64_t power = number.digits - number.fractionDigits;
    const char* p = number.begin;
    for (; *p == '0' || *p == '.'; ++p) {
        power -= *p == '0' ? 1 : 0;
    }
    return !IsDigit(*p) || power + number.exponent <= 0;
}

/// False for a number beyond the range.
bool ConvertLong(const Decimal& number, double& value) {
    const std::errc error = std::from_chars(number.begin, number.end, value).ec;
    if (error == std::errc() && !std::isinf(value)) {
        return true;
    }
    value = 0.0;
    return IsBelowOne(number);
}

}  // namespace

TokenReader::TokenReader(FileContent text) : text_(std::move(text)), cursor_(Begin()) {}

TokenReader::TokenReader(std::string_view text)
    : text_{std::make_unique<char[]>(text.size() + 1), text.size()}, cursor_(Begin()) {
    std::copy(text.begin(), text.end(), text_.bytes.get());
}

bool TokenReader::ReadLine(std::size_t bufferSize, std::string_view& line) {
    if (AtEnd()) {
        return false;
    }
    const char* const begin = cursor_;
    std::size_t length = std::min(text_.size - Position(), bufferSize - 1);
    if (const void* end = std::memchr(begin, '\n', length)) {
        length = static_cast<std::size_t>(static_cast<const char*>(end) - begin) + 1;
    }
    cursor_ += length;
    const std::string_view read(begin, length);
    line = read.substr(0, read.find('\0'));
    return true;
}

bool TokenReader::ReadBytes(std::size_t count, std::string_view& bytes) {
    if (count > text_.size - Position()) {
        return false;
    }
    bytes = {cursor_, count};
    cursor_ += count;
    return true;
}

bool TokenReader::ReadInt(int& value) {
    const char* p = PastBlanks(cursor_);
    const bool negative = TakeSign(p);
    const char* const digits = p;
    const std::int64_t number = TakeInteger(p);
    cursor_ = p;
    const bool hexadecimal = IsHexMark(*p) && p == digits + 1 && *digits == '0';
    const std::int64_t result = negative ? -number : number;
    if (p == digits || hexadecimal || result < INT32_MIN || result > INT32_MAX) {
        return false;
    }
    value = static_cast<int>(result);
    return true;
}

bool TokenReader::ReadDouble(double& value) {
    const char* p = PastBlanks(cursor_);
    const bool negative = TakeSign(p);
    Decimal number;
    double magnitude = 0.0;
    const bool read =
        TakeDecimal(p, number) && (ConvertExactly(number, magnitude) || ConvertLong(number, magnitude));
    cursor_ = p;
    if (read) {
        value = kSigns[negative ? 1 : 0] * magnitude;
    }
    return read;
}

void TokenReader::SkipBlanks() {
    cursor_ = PastBlanks(cursor_);
}

std::size_t TokenReader::LineNumber() const {
    return static_cast<std::size_t>(std::count(Begin(), cursor_, '\n')) + 1;
}

std::optional<TokenReader> OpenText(const std::string& path) {
    const HostFile file(path, "r");
    if (!file) {
        return std::nullopt;
    }
    FileContent text;
    if (!ReadAll(file.Get(), text)) {
        RecordFault({path, "", "a text file", "a file that cannot be read",
                     "check the file and the device that it lies on"});
        return std::nullopt;
    }
    return TokenReader(std::move(text));
}

}  // namespace qnl
