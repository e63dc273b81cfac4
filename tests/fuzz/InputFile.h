#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

/// The fuzzer's bytes as a file; one file per process, written anew for every input.
class InputFile {
public:
    explicit InputFile(const char* extension)
        : path_((std::filesystem::temp_directory_path() /
                 ("qnl_fuzz_" + std::to_string(std::random_device()()) + extension))
                    .string()) {}
    ~InputFile() { std::remove(path_.c_str()); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::string& Write(const std::uint8_t* bytes, std::size_t count) const {
        std::ofstream file(path_, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
        return path_;
    }

private:
    std::string path_;
};
