#pragma once

#include <string>
#include <utility>

#include "base/Id.h"
#include "base/TokenReader.h"

namespace qnl::probe {

/// Walks through the node labels of a list file: the lines between one that holds "<List>" and the next that
/// holds "</List>", any number of times. Each gives the integer that it begins with; one that begins with
/// none is passed over. A line longer than 1,023 characters goes on as the next line.
class NodeIdList {
public:
    /// `text` is the content of the file.
    explicit NodeIdList(std::string_view text) : text_(text) {}

    /// The next label. False at the end.
    bool Next(NodeLabel& label);

private:
    TokenReader text_;
    bool inList_ = false;
};

}  // namespace qnl::probe
