#include "text/NumberText.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace qnl::text {

std::string NumberText(double number) {
    if (std::isnan(number)) {
        return "-";
    }
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.5g", number);
    return text.data();
}

std::string CountText(long long count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace qnl::text
