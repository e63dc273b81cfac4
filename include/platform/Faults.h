#pragma once

#include <string>
#include <vector>

namespace qnl {

/// One thing that was wrong with a file or its values, in words for its user.
struct Fault {
    std::string file;    ///< path, empty when no file is concerned
    std::string object;  ///< item, record, line or entity
    std::string expected;
    std::string found;
    std::string remedy;
};

/// Adds to the process-wide list of faults. Safe from any thread.
void RecordFault(Fault fault);

/// Gives the faults recorded so far, in the order of recording, and empties the list.
std::vector<Fault> TakeFaults();

}  // namespace qnl
