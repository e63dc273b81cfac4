#pragma once

#include <string>

namespace qnl::interop {

/// Raises ForeignProblem about a file of an extension that is not read: where the format is known, with the
/// way by which its temperatures get in all the same, else with the list of what is read.
[[noreturn]] void RaiseUnknownFormat(const std::string& file);

}  // namespace qnl::interop
