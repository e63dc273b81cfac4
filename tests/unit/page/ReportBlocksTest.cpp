#include "page/ReportBlocks.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <limits>

namespace {

using qnl::page::Integers;
using qnl::page::LevelOf;
using qnl::page::Levels;
using qnl::page::ValueRange;
using Bytes = std::vector<unsigned char>;

constexpr double kLastLevel = 65527.0;
constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

Bytes FromBase64(const std::string& text) {
    const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Bytes bytes;
    std::uint32_t bits = 0;
    int have = 0;
    for (const char character : text) {
        const std::size_t digit = digits.find(character);
        if (digit == std::string::npos) {
            EXPECT_EQ(character, '=');
            break;
        }
        bits = bits << 6U | static_cast<std::uint32_t>(digit);
        have += 6;
        if (have >= 8) {
            have -= 8;
            bytes.push_back(static_cast<unsigned char>(bits >> have & 0xFFU));
        }
    }
    return bytes;
}

Bytes Planes(const std::string& block, std::size_t count) {
    const Bytes packed = FromBase64(block);
    Bytes planes(count);
    uLongf length = static_cast<uLongf>(count);
    EXPECT_EQ(uncompress(planes.data(), &length, packed.data(), static_cast<uLong>(packed.size())), Z_OK);
    EXPECT_EQ(length, count);
    return planes;
}

/// The numbers of a block, by the description of the page's data.
template <typename Number>
std::vector<Number> Decode(const std::string& block, std::size_t count,
                           const std::vector<Number>* base = nullptr) {
    const Bytes planes = Planes(block, count * sizeof(Number));
    std::vector<Number> numbers;
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint64_t folded = 0;
        for (std::size_t k = 0; k < sizeof(Number); ++k) {
            folded |= std::uint64_t{planes[k * count + i]} << (8 * k);
        }
        sum += (folded & 1U) != 0 ? ~(folded >> 1U) : folded >> 1U;
        numbers.push_back(static_cast<Number>(sum + (base != nullptr ? (*base)[i] : 0U)));
    }
    return numbers;
}

TEST(FiniteRange, LeavesOutWhatIsNoNumber) {
    const float infinity = std::numeric_limits<float>::infinity();
    const ValueRange range = qnl::page::FiniteRange({{kNothing, 3.0F, -2.0F}, {}, {infinity, 7.5F}});
    EXPECT_EQ(range.min, -2.0);
    EXPECT_EQ(range.max, 7.5);
    EXPECT_EQ(qnl::page::FiniteRange({{kNothing}}).max, 0.0);
}

TEST(LevelOf, SpreadsTheRangeOverTheLevels) {
    const ValueRange range{50.0, 250.0};
    EXPECT_EQ(LevelOf(50.0, range), 0);
    EXPECT_EQ(LevelOf(250.0, range), 65527);
    EXPECT_EQ(LevelOf(150.0, range), 32764);  // 32763.5 goes up
    EXPECT_EQ(LevelOf(49.0, range), 0);
    EXPECT_EQ(LevelOf(999.0, range), 65527);
    EXPECT_EQ(LevelOf(5.0, {5.0, 5.0}), 0);
}

TEST(LevelOf, WhatIsNoNumberIsTheFirstStatus) {
    EXPECT_EQ(LevelOf(kNothing, {0.0, 1.0}), 65535);
    EXPECT_EQ(qnl::page::StatusLevel(1), 65534);
}

TEST(LevelOf, AValueReadBackIsWithinHalfAStep) {
    const ValueRange range{-3.0, 17.0};
    const double step = (range.max - range.min) / kLastLevel;
    for (int i = 0; i <= 1000; ++i) {
        const double value = range.min + 0.02 * i;
        EXPECT_LE(std::abs(range.min + LevelOf(value, range) * step - value), 0.5 * step * (1.0 + 1e-9));
    }
}

TEST(EncodeBlock, IsPlanesOfFoldedDifferences) {
    // 5, -2, +256 fold to 10, 3, 512: low bytes, then high ones.
    EXPECT_EQ(Planes(qnl::page::EncodeBlock(Levels{5, 3, 259}, nullptr), 6), (Bytes{10, 3, 0, 0, 0, 2}));
}

TEST(EncodeBlock, ALaterTimeIsTheDifferenceFromTheOneBefore) {
    const Levels before{100, 200, 300};
    // 1, 1, 1 away from before: the first difference 1, then none.
    EXPECT_EQ(Planes(qnl::page::EncodeBlock(Levels{101, 201, 301}, &before), 6), (Bytes{2, 0, 0, 0, 0, 0}));
}

TEST(EncodeBlock, LevelsComeBackWithEveryStepOfTheRange) {
    const Levels base{0, 65535, 32768, 7, 65534, 0};
    const Levels numbers{65535, 0, 32767, 65527, 65534, 1};
    EXPECT_EQ(Decode<std::uint16_t>(qnl::page::EncodeBlock(numbers, nullptr), 6), numbers);
    EXPECT_EQ(Decode<std::uint16_t>(qnl::page::EncodeBlock(numbers, &base), 6, &base), numbers);
}

TEST(EncodeBlock, WordsComeBack) {
    const Integers words{0U, 0xFFFFFFFFU, 0x80000000U, 1U, 0x7FFFFFFFU};
    EXPECT_EQ(Decode<std::uint32_t>(qnl::page::EncodeBlock(words), 5), words);
    EXPECT_EQ(Decode<std::uint32_t>(qnl::page::EncodeBlock(Integers{}), 0), Integers{});
}

TEST(BitsOf, AreThoseOfSinglePrecision) {
    EXPECT_EQ(qnl::page::BitsOf({1.0F, -2.0F}), (Integers{0x3F800000U, 0xC0000000U}));
}

}  // namespace
