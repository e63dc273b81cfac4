#pragma once

#include <string>

namespace qnl::text {

/// A text as one word of a command line that is pasted into a shell: as it stands when the shell takes it for
/// itself, else in quotation marks.
std::string ShellWord(const std::string& text);

/// The path of a file as such a word: one that begins like an option begins with its folder, "./", instead.
std::string ShellPath(const std::string& path);

}  // namespace qnl::text
