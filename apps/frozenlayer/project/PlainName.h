#pragma once

#include <string>
#include <string_view>

namespace qnl::project {

/// A text as the name of a file on every system, of at most 60 bytes: letters of all scripts (UTF-8), digits,
/// blanks inside, "-" and "_" stay, anything else becomes "-". "part" when nothing is left.
std::string PlainName(std::string_view text);

/// The same as the name of a project's files. When "<name><run>" would read as another name with the number
/// of an output time, digits and "_" at its end go.
std::string ProjectName(std::string_view text, std::string_view run);

}  // namespace qnl::project
