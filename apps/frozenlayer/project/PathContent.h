#pragma once

#include <string_view>

namespace qnl::project {

/// What stands at a path, told by content.
enum class PathContent { Folder, Mesh, Result, AsciiResult, Search, RunFile, Material, Unknown };

/// Raises InputProblem when nothing is there or it cannot be read.
PathContent RecognisePath(std::string_view path);

}  // namespace qnl::project
