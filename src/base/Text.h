#pragma once

#include <string_view>

namespace qnl {

inline bool Holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

inline bool EndsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace qnl
