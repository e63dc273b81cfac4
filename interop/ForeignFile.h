#pragma once

#include <string>

namespace qnl::interop {

/// Extension in lower case, with its point.
std::string ExtensionOf(const std::string& file);

/// Raises ForeignProblem for what is not there or is a folder.
void CheckForeignFile(const std::string& file);

}  // namespace qnl::interop
