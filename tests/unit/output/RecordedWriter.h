#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/ResultOrigin.h"

/// What the result library was told, in place of a file. Takes the place of the platform's writer in this
/// test program.
struct RecordedWriting {
    std::vector<std::string> calls;  ///< with their arguments; arrays without
    std::vector<std::string> items;  ///< id, name, unit, type, maximum and minimum of each
    qnl::ResultOrigin origin;
    std::vector<int> labels;                   ///< from entry 1 on
    std::map<int, std::vector<float>> values;  ///< by item, from entry 1 on
};

/// Of this process; a test clears it.
RecordedWriting& TheWriting();
