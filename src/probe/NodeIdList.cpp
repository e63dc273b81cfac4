#include "probe/NodeIdList.h"

#include <cstddef>
#include <string_view>

#include "base/Text.h"

namespace qnl::probe {

namespace {

constexpr std::size_t kLineBuffer = 1024;

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
