#pragma once

#include <optional>
#include <string>

#include "base/TokenReader.h"

namespace qnl::layout {

/// The names that a run file gives. Of several sections of one kind the last
/// counts, and of the entries of a section the first.
struct RunFileNames {
    std::optional<std::string> mesh;
    std::optional<std::string> material;
};

RunFileNames ReadRunFileNames(TokenReader& file);

/// The text of a run file that names one mesh and one material.
std::string RunFileText(const std::string& mesh, const std::string& material);

/// Replaces a line by its value: the text after the first "=" without one leading blank, cut at the first
/// line feed and without a carriage return at its end; a line without "=" is only cut.
void ExtractLineValue(std::string& line);

}  // namespace qnl::layout
