#include "interop/ForeignFile.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

namespace fs = std::filesystem;

std::string ExtensionOf(const std::string& file) {
    std::string extension = fs::path(file).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

void CheckForeignFile(const std::string& file) {
    std::error_code failed;
    if (!fs::is_regular_file(file, failed)) {
        throw ForeignProblem(file + (fs::is_directory(file, failed) ? " is a folder; give a file in it"
                                                                    : " is missing; give an existing file"));
    }
}

}  // namespace qnl::interop
