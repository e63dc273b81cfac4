#include "text/ShellWord.h"

#include <algorithm>
#include <string_view>

namespace qnl::text {

namespace {

/// Characters that mean nothing else to a shell; so do all beyond ASCII.
constexpr std::string_view kPlain =
#ifdef _WIN32
    "\\"
#endif
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./:,+@";

bool IsPlain(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || kPlain.find(c) != std::string_view::npos;
    });
}

}  // namespace

std::string ShellWord(const std::string& text) {
    if (IsPlain(text)) {
        return text;
    }
#ifdef _WIN32
    return "\"" + text + "\"";
#else
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return word + "'";
#endif
}

std::string ShellPath(const std::string& path) {
    return ShellWord(path.substr(0, 1) == "-" ? "./" + path : path);
}

}  // namespace qnl::text
