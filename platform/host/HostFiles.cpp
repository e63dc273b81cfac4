#include "platform/HostFiles.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

std::string HostPath(std::string_view path) {
    std::string name(path);
#ifndef _WIN32
    std::replace(name.begin(), name.end(), '\\', '/');
#endif
    return name;
}

HostFile::HostFile(std::string_view path, const char* mode) {
    const std::string name = HostPath(path);
    if (name.find('\0') != std::string::npos) {
        errno = ENOENT;
        return;
    }
    std::error_code ignored;
    if (fs::is_directory(name, ignored)) {
        // Some systems open a directory and fail only when it is read.
        errno = EISDIR;
        return;
    }
    errno = 0;
    stream_ = std::fopen(name.c_str(), mode);
}

HostFile::HostFile(HostFile&& other) noexcept : stream_(std::exchange(other.stream_, nullptr)) {}

HostFile& HostFile::operator=(HostFile&& other) noexcept {
    if (this != &other) {
        Close();
        stream_ = std::exchange(other.stream_, nullptr);
    }
    return *this;
}

HostFile::~HostFile() {
    Close();
}

bool HostFile::Close() {
    if (stream_ == nullptr) {
        return true;
    }
    const bool clean = std::ferror(stream_) == 0;
    errno = 0;
    return (std::fclose(std::exchange(stream_, nullptr)) == 0) && clean;
}

bool ReadAll(std::FILE* stream, std::string& content) {
    content.clear();
    std::size_t filled = 0;
    std::size_t chunk = 1 << 16;
    for (;;) {
        content.resize(filled + chunk);
        const std::size_t got = std::fread(&content[filled], 1, chunk, stream);
        filled += got;
        if (got < chunk) {
            break;
        }
        chunk = filled;
    }
    content.resize(filled);
    return std::ferror(stream) == 0;
}

bool IsOlder(std::string_view path, std::string_view reference) {
    std::error_code pathFailed;
    std::error_code referenceFailed;
    const fs::file_time_type time = fs::last_write_time(HostPath(path), pathFailed);
    const fs::file_time_type referenceTime = fs::last_write_time(HostPath(reference), referenceFailed);
    return !pathFailed && !referenceFailed && time < referenceTime;
}
