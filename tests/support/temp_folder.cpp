#include "support/temp_folder.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    constexpr int kMostFolders = 100000;
    for (int number = 0; number < kMostFolders; ++number) {
        path_ = fs::temp_directory_path() / ("qnl_test_" + std::to_string(number));
        std::error_code failed;
        if (fs::create_directory(path_, failed)) {
            return;
        }
    }
    throw std::runtime_error("no folder can be made in " + fs::temp_directory_path().string());
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::size_t TempFolder::FileCount() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path_), fs::directory_iterator()));
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteBytes(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    out << content;
    if (!out) {
        throw std::runtime_error("cannot write " + path);
    }
}
