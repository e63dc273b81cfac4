#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

/// A folder of its own for one test, removed with everything in it at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Path(const std::string& name) const { return (path_ / name).string(); }
    std::string Folder() const { return path_.string(); }
    std::size_t FileCount() const;

private:
    std::filesystem::path path_;
};

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& content);
