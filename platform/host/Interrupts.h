#pragma once

#include <stdexcept>

namespace qnl::host {

/// Raised where work was interrupted.
class Interrupted : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// From now on an interrupt (Ctrl-C) and a request to end are noted, so that the program can clear up; a
/// second one ends it at once. Writing into a pipe that nobody reads fails, instead of ending the program.
void NoteInterrupts();

/// Number of the signal that was noted, 0 for none.
int NotedInterrupt();

/// Raises Interrupted when a signal was noted; to be called between pieces of long work.
void RaiseIfInterrupted();

}  // namespace qnl::host
