#include "layout/MarkerLog.h"

#include <cstddef>
#include <optional>

#include "base/Text.h"
#include "base/TokenReader.h"

namespace qnl::layout {

namespace {

constexpr std::string_view kEndMark = "[EOF]";
constexpr std::size_t kLineBuffer = 255;

}  // namespace

MarkerLog LookAtMarkerLog(const std::string& path) {
    std::optional<TokenReader> text = OpenText(path);
    if (!text) {
        return MarkerLog::Missing;
    }
    std::string_view line;
    while (text->ReadLine(kLineBuffer, line)) {
        if (Holds(line, kEndMark)) {
            return MarkerLog::Complete;
        }
    }
    return MarkerLog::Incomplete;
}

std::string MarkerLogText(const std::vector<std::string>& times) {
    std::string text;
    for (std::size_t i = 0; i < times.size(); ++i) {
        text += std::to_string(i + 1) + " " + times[i] + "\n";
    }
    return text + std::string(kEndMark) + "\n";
}

}  // namespace qnl::layout
