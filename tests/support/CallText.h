#pragma once

#include <sstream>
#include <string>

/// A call as tests record it: its name and its arguments, separated by blanks.
template <typename... Values>
std::string CallText(const char* name, const Values&... values) {
    std::ostringstream text;
    text << name;
    ((text << ' ' << values), ...);
    return text.str();
}
