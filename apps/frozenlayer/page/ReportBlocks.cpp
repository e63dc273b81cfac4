#include "page/ReportBlocks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "text/Deflate.h"

namespace qnl::page {

namespace {

constexpr int kMaxLevel = 65527;
using Bytes = std::vector<unsigned char>;

/// Differences against the base and the number before, folded to small unsigned numbers, low bytes first.
template <typename Number>
Bytes DifferencePlanes(const std::vector<Number>& numbers, const std::vector<Number>* base) {
    using Signed = std::make_signed_t<Number>;
    const std::size_t count = numbers.size();
    Bytes planes(count * sizeof(Number));
    std::uint32_t before = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t value =
            std::uint32_t{numbers[i]} - (base != nullptr ? std::uint32_t{(*base)[i]} : 0U);
        const auto difference = static_cast<Number>(value - before);
        const bool negative = static_cast<Signed>(difference) < 0;
        const auto doubled = static_cast<std::uint32_t>(static_cast<Number>(std::uint32_t{difference} << 1U));
        const std::uint32_t folded = negative ? ~doubled : doubled;
        for (std::size_t k = 0; k < sizeof(Number); ++k) {
            planes[k * count + i] = static_cast<unsigned char>((folded >> (8 * k)) & 0xFFU);
        }
        before = value;
    }
    return planes;
}

std::string Base64(const Bytes& bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t have = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8U | (k < have ? bytes[i + k] : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += k <= have ? kDigits[(group >> (18 - 6 * k)) & 63U] : '=';
        }
    }
    return text;
}

std::string Packed(const Bytes& planes) {
    return Base64(text::Deflate(planes.data(), planes.size()));
}

}  // namespace

ValueRange FiniteRange(const std::vector<std::vector<float>>& values) {
    ValueRange range;
    bool any = false;
    for (const std::vector<float>& list : values) {
        for (const float value : list) {
            if (std::isfinite(value)) {
                const double number = value;
                range = any ? ValueRange{std::min(range.min, number), std::max(range.max, number)}
                            : ValueRange{number, number};
                any = true;
            }
        }
    }
    return range;
}

std::uint16_t LevelOf(double value, const ValueRange& range) {
    if (!std::isfinite(value)) {
        return StatusLevel(0);
    }
    const double scale = range.max > range.min ? kMaxLevel / (range.max - range.min) : 0.0;
    const double level = std::floor((value - range.min) * scale + 0.5);
    return static_cast<std::uint16_t>(std::clamp(level, 0.0, static_cast<double>(kMaxLevel)));
}

Integers BitsOf(const std::vector<float>& values) {
    Integers words(values.size());
    static_assert(sizeof(float) == sizeof(std::uint32_t));
    if (!values.empty()) {
        std::memcpy(words.data(), values.data(), values.size() * sizeof(float));
    }
    return words;
}

std::string EncodeBlock(const Levels& numbers, const Levels* base) {
    return Packed(DifferencePlanes(numbers, base));
}

std::string EncodeBlock(const Integers& numbers) {
    return Packed(DifferencePlanes<std::uint32_t>(numbers, nullptr));
}

}  // namespace qnl::page
