#include "probe/NodeIdList.h"

#include <cstddef>
#include <string_view>

namespace qnl::probe {

namespace {

constexpr std::size_t kLineBuffer = 1024;

bool Holds(std::string_view line, std::string_view mark) {
    return line.find(mark) != std::string_view::npos;
}

}  // namespace

bool NodeIdList::Next(NodeLabel& label) {
    int number = 0;
    std::string_view line;
    while (text_.ReadLine(kLineBuffer, line)) {
        if (!inList_) {
            inList_ = Holds(line, "<List>");
        } else if (Holds(line, "</List>")) {
            inList_ = false;
        } else if (TokenReader(line).ReadInt(number)) {
            label = NodeLabel(number);
            return true;
        }
    }
    return false;
}

}  // namespace qnl::probe
