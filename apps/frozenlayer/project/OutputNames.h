#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qnl::project {

/// What is wrong with the name of one file to be written, a `what`; empty for a name that ends in one of the
/// endings, of which the first is recommended, and whose folder is there.
std::string ProblemOfFileName(const std::string& name, const std::vector<std::string_view>& endings,
                              const char* what);

/// The path that the names of several written files begin with: `out` without the first of the endings that
/// it has. Raises InputProblem when its folder is not there or nothing is left as a name.
std::string NameOfOutput(const std::string& out, const std::vector<std::string_view>& endings);

/// What NameOfOutput would raise; empty for a name that it takes.
std::string ProblemOfOutputName(const std::string& out, const std::vector<std::string_view>& endings);

/// Raises InputProblem for the first of the files that is there already.
void RefuseExisting(const std::vector<std::string>& paths);

}  // namespace qnl::project
