#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qnl::text {

/// Insertions, deletions and replacements that turn one text into the other.
std::size_t EditDistance(const std::string& a, const std::string& b);

/// The word that `wrong` is most likely a slip of: the first of those nearest to it, of which at most a third
/// of the letters differ; empty when there is none.
std::string NearestWord(const std::string& wrong, const std::vector<std::string>& words);

}  // namespace qnl::text
