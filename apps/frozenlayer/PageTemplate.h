#pragma once

#include <string>

namespace qnl {

/// The results page without data: what stands before and behind the place of the data.
struct PageTemplate {
    std::string before;
    std::string behind;
};

/// Reads the page that the build knows, or else the one beside the program. Raises InputProblem.
PageTemplate ReadPageTemplate();

}  // namespace qnl
