#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A folder of its own for one test, removed with everything in it at the end.
class TempFolder {
public:
    TempFolder() {
        const std::filesystem::path base = std::filesystem::temp_directory_path();
        for (int number = 0; number < 100000; ++number) {
            path_ = base / ("qnl_test_" + std::to_string(number));
            std::error_code failed;
            if (std::filesystem::create_directory(path_, failed)) {
                return;
            }
        }
        throw std::runtime_error("no folder can be made in " + base.string());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Path(const std::string& name) const { return (path_ / name).string(); }
    std::string Folder() const { return path_.string(); }
    std::size_t FileCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path path_;
};

inline std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    out << content;
    if (!out) {
        throw std::runtime_error("cannot write " + path);
    }
}
