#include "base/TokenReader.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using qnl::TokenReader;

std::vector<std::string> Lines(const std::string& text, std::size_t bufferSize) {
    TokenReader reader(text);
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.ReadLine(bufferSize, line)) {
        lines.emplace_back(line);
    }
    return lines;
}

TEST(TokenReaderLines, KeepTheirLineEnds) {
    EXPECT_EQ(Lines("one\ntwo\r\n\nlast", 255), (std::vector<std::string>{"one\n", "two\r\n", "\n", "last"}));
}

TEST(TokenReaderLines, EmptyTextHasNone) {
    EXPECT_TRUE(Lines("", 255).empty());
}

TEST(TokenReaderLines, ALongLineContinuesAsTheNextOne) {
    const std::string long1(254, 'a');
    const std::string long2(300, 'b');
    EXPECT_EQ(Lines(long1 + "\n" + long2 + "\n", 255),
              (std::vector<std::string>{long1, "\n", long2.substr(0, 254), long2.substr(254) + "\n"}));
}

TEST(TokenReaderLines, AFailedReadLeavesTheLineAsItWas) {
    TokenReader reader("only");
    std::string_view line;
    ASSERT_TRUE(reader.ReadLine(255, line));
    EXPECT_FALSE(reader.ReadLine(255, line));
    EXPECT_EQ(line, "only");
}

TEST(TokenReaderLines, TextBehindANulIsPassedOver) {
    EXPECT_EQ(Lines(std::string("ab\0cd\nef\n", 9), 255), (std::vector<std::string>{"ab", "ef\n"}));
}

TEST(TokenReaderLines, LinesAsTheStreamFunctionsReadThem) {
    std::mt19937 random(20240611);
    std::string text;
    for (int i = 0; i < 400; ++i) {
        text += std::string(random() % 40, static_cast<char>('a' + i % 26));
        text += random() % 5 == 0 ? "" : "\n";
    }
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    std::fwrite(text.data(), 1, text.size(), file);
    for (const int size : {2, 7, 16, 1024}) {
        std::rewind(file);
        std::vector<std::string> expected;
        std::vector<char> buffer(static_cast<std::size_t>(size));
        while (std::fgets(buffer.data(), size, file) != nullptr) {
            expected.emplace_back(buffer.data());
        }
        EXPECT_EQ(Lines(text, static_cast<std::size_t>(size)), expected) << "buffer of " << size;
    }
    std::fclose(file);
}

struct IntCase {
    const char* text;
    bool read;
    int value;
    const char* rest;
};

TEST(TokenReaderInt, ReadsDecimalsAndStopsBehindThem) {
    const IntCase cases[] = {
        {"17 x", true, 17, " x"},
        {" \t\r\n\v\f-8\n", true, -8, "\n"},
        {"+4", true, 4, ""},
        {"12.5", true, 12, ".5"},
        {"007a", true, 7, "a"},
        {"2147483647", true, 2147483647, ""},
        {"-2147483648", true, std::numeric_limits<int>::min(), ""},
        {"2147483648 1", false, 99, " 1"},
        {"-2147483649", false, 99, ""},
        {"99999999999999999999999999999999999999", false, 99, ""},
        {"0x10", false, 99, "x10"},
        {"abc", false, 99, "abc"},
        {"-", false, 99, ""},
        {"- 5", false, 99, " 5"},
        {"--5", false, 99, "-5"},
        {".5", false, 99, ".5"},
        {"inf", false, 99, "inf"},
        {"   ", false, 99, ""},
        {"", false, 99, ""},
    };
    for (const IntCase& c : cases) {
        TokenReader reader(c.text);
        int value = 99;
        EXPECT_EQ(reader.ReadInt(value), c.read) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_EQ(std::string(c.text).substr(reader.Position()), c.rest) << c.text;
    }
}

struct DoubleCase {
    const char* text;
    bool read;
    double value;
    const char* rest;
};

TEST(TokenReaderDouble, ReadsDecimalsAndStopsBehindThem) {
    const DoubleCase cases[] = {
        {"1.5 2", true, 1.5, " 2"},
        {"\n\t+2.5e2x", true, 250.0, "x"},
        {"-.5", true, -0.5, ""},
        {"5.", true, 5.0, ""},
        {"1.5.2", true, 1.5, ".2"},
        {"3d5", true, 3.0, "d5"},
        {"00012", true, 12.0, ""},
        {"1E-3,", true, 0.001, ","},
        {"-0.0", true, -0.0, ""},
        {"0e999", true, 0.0, ""},
        {"1e-999", true, 0.0, ""},
        {"4.9e-324", true, 4.9e-324, ""},
        {"1.7976931348623157e308", true, 1.7976931348623157e308, ""},
        {"1e309", false, 99.0, ""},
        {"-1e999999999999", false, 99.0, ""},
        {"inf", false, 99.0, "inf"},
        {"-inf", false, 99.0, "inf"},
        {"nan", false, 99.0, "nan"},
        {"0x1p3", false, 99.0, "x1p3"},
        {"1e", false, 99.0, ""},
        {"1e+x", false, 99.0, "x"},
        {".", false, 99.0, ""},
        {"-", false, 99.0, ""},
        {"--5", false, 99.0, "-5"},
        {"e5", false, 99.0, "e5"},
        {"", false, 99.0, ""},
    };
    for (const DoubleCase& c : cases) {
        TokenReader reader(c.text);
        double value = 99.0;
        EXPECT_EQ(reader.ReadDouble(value), c.read) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_EQ(std::signbit(value), std::signbit(c.value)) << c.text;
        EXPECT_EQ(std::string(c.text).substr(reader.Position()), c.rest) << c.text;
    }
}

TEST(TokenReaderDouble, LongMantissasWithOutlyingExponents) {
    const std::string zeros(400, '0');
    double value = 99.0;
    EXPECT_TRUE(TokenReader("0." + zeros + "1").ReadDouble(value));
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(TokenReader("0." + zeros + "1e401").ReadDouble(value));
    EXPECT_EQ(value, 1.0);
    EXPECT_TRUE(TokenReader("1" + zeros + "e-400").ReadDouble(value));
    EXPECT_EQ(value, 1.0);
    EXPECT_TRUE(TokenReader("1" + zeros + "e-800").ReadDouble(value));
    EXPECT_EQ(value, 0.0);
    EXPECT_FALSE(TokenReader("1" + zeros).ReadDouble(value));
    EXPECT_EQ(value, 0.0);
}

TEST(TokenReaderDouble, RoundsAsTheStandardConversion) {
    std::mt19937_64 random(4711);
    const char* const formats[] = {"%.17g", "%.15g", "%.9g", "%.6g", "%.3f", "%12.5e", "%.0f", "%.25e"};
    char text[512];
    for (int i = 0; i < 200000; ++i) {
        double number = 0.0;
        if (i % 2 == 0) {
            const std::uint64_t bits = random();
            std::memcpy(&number, &bits, sizeof number);
        } else {
            number = static_cast<double>(static_cast<std::int64_t>(random() % 2000000) - 1000000) / 1000.0;
        }
        if (!std::isfinite(number)) {
            continue;
        }
        std::snprintf(text, sizeof text, formats[random() % 8], number);
        const double expected = std::strtod(text, nullptr);
        double value = 0.0;
        ASSERT_EQ(TokenReader(text).ReadDouble(value), std::isfinite(expected)) << text;
        if (std::isfinite(expected)) {
            ASSERT_EQ(std::memcmp(&value, &expected, sizeof value), 0) << text;
        }
    }
}

TEST(TokenReaderMixed, LinesAndNumbersShareOneCursor) {
    TokenReader reader("[HEADER]\n1007  3.5\n\n  \nfirst\n12 rest of line\nnext\n");
    std::string_view line;
    int code = 0;
    double number = 0.0;
    ASSERT_TRUE(reader.ReadLine(1024, line));
    ASSERT_TRUE(reader.ReadInt(code));
    ASSERT_TRUE(reader.ReadDouble(number));
    reader.SkipBlanks();
    ASSERT_TRUE(reader.ReadLine(1024, line));
    EXPECT_EQ(line, "first\n");
    ASSERT_TRUE(reader.ReadInt(code));
    EXPECT_EQ(code, 12);
    ASSERT_TRUE(reader.ReadLine(1024, line));
    EXPECT_EQ(line, " rest of line\n");
    EXPECT_EQ(reader.LineNumber(), 7U);
}

TEST(TokenReaderMixed, ANulStopsNumbersButNotLines) {
    TokenReader reader(std::string("1\0 2\n3", 6));
    int value = 0;
    ASSERT_TRUE(reader.ReadInt(value));
    EXPECT_FALSE(reader.ReadInt(value));
    std::string_view line;
    ASSERT_TRUE(reader.ReadLine(1024, line));
    ASSERT_TRUE(reader.ReadInt(value));
    EXPECT_EQ(value, 3);
}

TEST(TokenReaderMixed, AsTheStreamFunctionsScanRandomText) {
    std::mt19937 random(99);
    const char* const pieces[] = {"12", "-3", "4.75", "1e3 ", "x", "\n", " ", "-", "+8", ".", "\n\n", "abc"};
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += pieces[random() % 12];
        text += random() % 3 == 0 ? " " : "";
    }
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    TokenReader reader(text);
    for (;;) {
        int expectedInt = 5;
        int actualInt = 5;
        double expectedDouble = 5.0;
        double actualDouble = 5.0;
        if (random() % 2 == 0) {
            ASSERT_EQ(reader.ReadInt(actualInt), std::fscanf(file, "%d", &expectedInt) == 1);
        } else {
            ASSERT_EQ(reader.ReadDouble(actualDouble), std::fscanf(file, "%lf", &expectedDouble) == 1);
        }
        ASSERT_EQ(actualInt, expectedInt);
        ASSERT_EQ(actualDouble, expectedDouble);
        ASSERT_EQ(reader.Position(), static_cast<std::size_t>(std::ftell(file)));
        char buffer[9];
        std::string_view line;
        const bool more = std::fgets(buffer, sizeof buffer, file) != nullptr;
        ASSERT_EQ(reader.ReadLine(sizeof buffer, line), more);
        if (!more) {
            break;
        }
        ASSERT_EQ(line, buffer);
    }
    std::fclose(file);
}

TEST(TokenReader, GivesBytesAsTheyAre) {
    TokenReader reader(std::string_view("a\nb\0c\nd", 7));
    std::string_view read;
    ASSERT_TRUE(reader.ReadLine(100, read));
    ASSERT_TRUE(reader.ReadBytes(4, read));
    EXPECT_EQ(read, std::string_view("b\0c\n", 4));
    EXPECT_FALSE(reader.ReadBytes(2, read)) << "one is left";
    EXPECT_EQ(read.size(), 4U);
    EXPECT_EQ(reader.Position(), 6U);
    EXPECT_TRUE(reader.ReadBytes(1, read));
    EXPECT_TRUE(reader.AtEnd());
}

TEST(OpenText, AMissingFileGivesNothing) {
    EXPECT_FALSE(qnl::OpenText(testing::TempDir() + "qnl_no_such_file").has_value());
}

}  // namespace
