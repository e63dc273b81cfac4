#include "text/TextFile.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qnl::text {

namespace {

template <typename Number>
std::string Shortest(Number number) {
    if (std::isnan(number)) {
        return "nan";
    }
    std::array<char, 40> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), written.ptr};
}

}  // namespace

std::string ExactText(float number) {
    return Shortest(number);
}

std::string ExactText(double number) {
    return Shortest(number);
}

std::string XmlText(const std::string& text) {
    std::string safe;
    for (const char character : text) {
        switch (character) {
            case '&':
                safe += "&amp;";
                break;
            case '<':
                safe += "&lt;";
                break;
            case '"':
                safe += "&quot;";
                break;
            default:
                safe += character;
        }
    }
    return safe;
}

}  // namespace qnl::text
