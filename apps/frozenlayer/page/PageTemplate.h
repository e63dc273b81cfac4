#pragma once

#include <string>

namespace qnl::page {

/// The results page without data: what stands before and behind the place of the data.
struct PageTemplate {
    std::string before;
    std::string behind;
};

/// Reads the page that is installed with the program, or else the one of its source. Raises InputProblem.
PageTemplate ReadPageTemplate();

}  // namespace qnl::page
