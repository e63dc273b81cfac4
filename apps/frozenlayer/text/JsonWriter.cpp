#include "text/JsonWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace qnl::text {

namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

/// Length of the UTF-8 sequence at the start of a text that is not empty; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80U                     ? 1
                               : lead >= 0xC2U && lead < 0xE0U  ? 2
                               : lead >= 0xE0U && lead < 0xF0U  ? 3
                               : lead >= 0xF0U && lead <= 0xF4U ? 4
                                                                : 0;
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    const bool overlong = (lead == 0xE0U && byte(1) < 0xA0U) || (lead == 0xF0U && byte(1) < 0x90U);
    const bool outside = (lead == 0xEDU && byte(1) >= 0xA0U) || (lead == 0xF4U && byte(1) >= 0x90U);
    return overlong || outside ? 0 : length;
}

std::string EscapedCharacter(char character) {
    if (character == '"' || character == '\\') {
        return {'\\', character};
    }
    constexpr unsigned char kFirstPrintable = 0x20;
    if (static_cast<unsigned char>(character) >= kFirstPrintable) {
        return {character};
    }
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(character));
    return code.data();
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        if (length == 0) {
            quoted += kReplacement;
        } else if (length == 1) {
            quoted += EscapedCharacter(text.front());
        } else {
            quoted += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return quoted + "\"";
}

template <typename Number>
std::string Shortest(Number number) {
    std::array<char, 40> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() ? std::string(digits.data(), end) : "null";
}

}  // namespace

void JsonWriter::Key(std::string_view key) {
    Separate();
    text_ += Quoted(key) + ": ";
    afterKey_ = true;
}

void JsonWriter::Value(std::string_view text) {
    Separate();
    text_ += Quoted(text);
}

void JsonWriter::Value(std::int64_t number) {
    Separate();
    text_ += Shortest(number);
}

void JsonWriter::Value(bool truth) {
    Separate();
    text_ += truth ? "true" : "false";
}

void JsonWriter::Value(double number) {
    Separate();
    text_ += std::isfinite(number) ? Shortest(number) : "null";
}

void JsonWriter::Begin(char bracket) {
    Separate();
    text_ += bracket;
    hasEntries_.push_back(false);
}

void JsonWriter::End(char bracket) {
    const bool hadEntries = hasEntries_.back();
    hasEntries_.pop_back();
    if (hadEntries) {
        BreakLine();
    }
    text_ += bracket;
}

void JsonWriter::Separate() {
    if (afterKey_ || hasEntries_.empty()) {
        afterKey_ = false;
        return;
    }
    if (hasEntries_.back()) {
        text_ += ',';
    }
    hasEntries_.back() = true;
    BreakLine();
}

void JsonWriter::BreakLine() {
    text_ += "\n" + std::string(2 * hasEntries_.size(), ' ');
}

}  // namespace qnl::text
