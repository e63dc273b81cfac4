#pragma once

#include <string>
#include <vector>

namespace qnl::project {

/// Adds a sentence without its full stop to the process-wide list of what the user should know of what was
/// done, and is no fault. It is told once, last of all. For the main thread only.
void RecordWarning(std::string sentence);

/// Gives the warnings recorded so far, equal ones once, and empties the list.
std::vector<std::string> TakeWarnings();

}  // namespace qnl::project
