#include "project/PlainName.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include "project/ProjectPaths.h"

namespace qnl::project {

namespace {

/// Bytes of the UTF-8 sequence at the beginning of the text: 1 for ASCII, 0 for what is none.
std::size_t SequenceLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    const auto isLater = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    const bool whole =
        length <= text.size() && std::all_of(text.begin() + std::min<std::size_t>(length, 1),
                                             text.begin() + static_cast<std::ptrdiff_t>(length), isLater);
    return whole ? length : 0;
}

bool IsPlain(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' || c == ' ';
}

std::string Trimmed(const std::string& name, const char* endings) {
    const std::size_t begin = name.find_first_not_of(' ');
    const std::size_t end = name.find_last_not_of(endings);
    return begin == std::string::npos || end == std::string::npos || end < begin
               ? std::string()
               : name.substr(begin, end + 1 - begin);
}

std::string OrPart(const std::string& name) {
    return name.empty() ? "part" : name;
}

/// Whether the base file of that name is taken for what it is.
bool ReadsBack(const std::string& name, std::string_view run) {
    const StageFile file{".", name, std::string(run), std::string(kFlowStage.pattern), 0};
    const StageFile read = SplitRunPath(file.Path());
    return read.name == name && read.index == 0;
}

}  // namespace

std::string PlainName(std::string_view text) {
    constexpr std::size_t kLongest = 60;
    std::string name;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const std::string_view letter = text.substr(0, std::max<std::size_t>(length, 1));
        if (name.size() + letter.size() > kLongest) {
            break;
        }
        const bool stays = length > 1 || (length == 1 && IsPlain(letter.front()));
        name += stays ? letter : "-";
        text.remove_prefix(letter.size());
    }
    return OrPart(Trimmed(name, " "));
}

std::string ProjectName(std::string_view text, std::string_view run) {
    const std::string name = PlainName(text);
    return ReadsBack(name, run) ? name : OrPart(Trimmed(name, "0123456789_ "));
}

}  // namespace qnl::project
