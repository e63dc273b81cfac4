#include "platform/HostFiles.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
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

namespace qnl {

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
    const int earlier = clean ? 0 : errno;
    errno = 0;
    const bool closed = std::fclose(std::exchange(stream_, nullptr)) == 0;
    if (!clean && errno == 0) {
        errno = earlier;
    }
    return closed && clean;
}

namespace {

/// Bytes from the position to the end, as far as the system tells; 0 for a stream that has no end.
std::size_t RestOfStream(std::FILE* stream) {
    const long here = std::ftell(stream);
    if (here < 0 || std::fseek(stream, 0, SEEK_END) != 0) {
        return 0;
    }
    const long end = std::ftell(stream);
    return std::fseek(stream, here, SEEK_SET) == 0 && end > here ? static_cast<std::size_t>(end - here) : 0;
}

// Storage that is written before it is read, so it is not zeroed.
std::unique_ptr<char[]> UnsetBytes(std::size_t count) {
    return std::unique_ptr<char[]>(new char[count]);
}

}  // namespace

bool ReadAll(std::FILE* stream, FileContent& content) {
    constexpr std::size_t kLeastRoom = 1 << 16;
    constexpr std::size_t kMostTrusted = std::size_t{1} << 30;
    // One byte more than there is shows the end.
    std::size_t room = std::clamp(RestOfStream(stream) + 1, kLeastRoom, kMostTrusted);
    content.size = 0;
    content.bytes = UnsetBytes(room + 1);
    for (;;) {
        content.size += std::fread(content.bytes.get() + content.size, 1, room - content.size, stream);
        if (content.size < room) {
            break;
        }
        room *= 2;
        std::unique_ptr<char[]> larger = UnsetBytes(room + 1);
        std::copy_n(content.bytes.get(), content.size, larger.get());
        content.bytes = std::move(larger);
    }
    content.bytes[content.size] = '\0';
    return std::ferror(stream) == 0;
}

bool ReadAll(std::FILE* stream, std::string& content) {
    FileContent all;
    const bool whole = ReadAll(stream, all);
    content.assign(all.bytes.get(), all.size);
    return whole;
}

bool IsOlder(std::string_view path, std::string_view reference) {
    std::error_code pathFailed;
    std::error_code referenceFailed;
    const fs::file_time_type time = fs::last_write_time(HostPath(path), pathFailed);
    const fs::file_time_type referenceTime = fs::last_write_time(HostPath(reference), referenceFailed);
    return !pathFailed && !referenceFailed && time < referenceTime;
}

}  // namespace qnl
