#pragma once

#include <string>

#include "info/FileFacts.h"

namespace qnl::info {

// Each takes a path of its kind and gives facts without path and kind. A file that cannot be used raises
// std::runtime_error with one sentence.

FileFacts ReadMeshFacts(const std::string& path);
FileFacts ReadResultFacts(const std::string& path);
FileFacts ReadSearchFacts(const std::string& path);
FileFacts ReadMaterialFacts(const std::string& path);
FileFacts ReadProjectFacts(const std::string& path);
FileFacts ReadRunFileFacts(const std::string& path);
FileFacts ReadAsciiResultFacts(const std::string& path);

}  // namespace qnl::info
