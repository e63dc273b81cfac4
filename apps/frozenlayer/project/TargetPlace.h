#pragma once

#include <cstdint>
#include <string>

namespace qnl::project {

/// Checks before long work whether what it writes can be written. A folder that is not there yet stands for
/// the nearest one above it that is; "" is the present one.

/// Raises InputProblem when no file can be made in the folder.
void CheckWritable(const std::string& folder);

/// Raises InputProblem when the folder's disk has less than `needed` bytes free.
void CheckRoom(const std::string& folder, std::uintmax_t needed);

/// The sentence about a place with too little room; empty when there is enough.
std::string ProblemOfRoom(const std::string& place, std::uintmax_t needed, std::uintmax_t available);

/// The folder in which a file stands.
std::string FolderOf(const std::string& file);

}  // namespace qnl::project
