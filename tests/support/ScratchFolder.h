#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

/// A folder of its own for one test, removed with it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::random_device device;
        do {
            path_ = std::filesystem::temp_directory_path() / ("qnl_test_" + std::to_string(device()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path() const { return path_.string(); }
    std::string File(const std::string& name) const { return (path_ / name).string(); }
    std::size_t FileCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
    }

    /// Writes a file below the folder, its folders included, and gives its path.
    std::string Write(const std::string& name, const std::string& content) const {
        const std::filesystem::path file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream stream(file, std::ios::binary);
        stream << content << std::flush;
        if (!stream) {
            throw std::runtime_error("cannot write " + file.string());
        }
        return file.string();
    }

    std::string Read(const std::string& name) const {
        std::ostringstream content;
        content << std::ifstream(path_ / name, std::ios::binary).rdbuf();
        return content.str();
    }

private:
    std::filesystem::path path_;
};
