#include "probe/NodeIdList.h"

#include <algorithm>

#include "probe/ScanInteger.h"

namespace qnl {

namespace {

bool Holds(std::string_view line, std::string_view mark) {
    return line.find(mark) != std::string_view::npos;
}

}  // namespace

std::string_view NodeIdList::TakeLine() {
    constexpr std::size_t kLongest = 1023;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size() - 1);
    const std::string_view line = rest_.substr(0, std::min(end + 1, kLongest));
    rest_.remove_prefix(line.size());
    return line.substr(0, line.find('\0'));
}

bool NodeIdList::Next(int& id) {
    while (!rest_.empty()) {
        const std::string_view line = TakeLine();
        if (!inList_) {
            inList_ = Holds(line, "<List>");
            continue;
        }
        if (Holds(line, "</List>")) {
            inList_ = false;
            continue;
        }
        TextSource source(line);
        if (ScanInteger(source, id)) {
            return true;
        }
    }
    return false;
}

}  // namespace qnl
