#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

/// Paths inside the program are Windows-style text. Every file is opened through HostPath, which gives
/// the name under which this system knows it: on systems other than Windows each "\" becomes "/".
std::string HostPath(std::string_view path);

namespace qnl {

/// Owning handle of an open C stream.
class HostFile {
public:
    HostFile() = default;
    /// Opens HostPath(path) with a mode as std::fopen takes it; on failure the handle stays empty.
    HostFile(std::string_view path, const char* mode);
    HostFile(HostFile&& other) noexcept;
    HostFile& operator=(HostFile&& other) noexcept;
    ~HostFile();

    explicit operator bool() const { return stream_ != nullptr; }
    std::FILE* Get() const { return stream_; }
    /// Closes; false when buffered data could not be written.
    bool Close();

private:
    std::FILE* stream_ = nullptr;
};

/// What a file holds, and a NUL character behind it.
struct FileContent {
    std::unique_ptr<char[]> bytes = std::make_unique<char[]>(1);  ///< size + 1 of them
    std::size_t size = 0;
};

/// Reads the rest of an open stream to its end. False on a read error; the content is then what came before.
/// The first of them does not copy, for large files.
bool ReadAll(std::FILE* stream, FileContent& content);
bool ReadAll(std::FILE* stream, std::string& content);

/// True when both files exist and the first was modified before the second.
bool IsOlder(std::string_view path, std::string_view reference);

/// A file written under a temporary name beside its target; Commit renames it over the target. Without a
/// successful Commit the target stays as it was and the temporary file is removed.
class ReplacedFile {
public:
    /// `mode` as std::fopen takes it, without "x".
    ReplacedFile(std::string_view path, const char* mode);
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

    explicit operator bool() const { return static_cast<bool>(file_); }
    std::FILE* Get() const { return file_.Get(); }
    /// What goes wrong shows when the file is committed. Raises in a program that has noted an interrupt.
    void Append(std::string_view text);
    /// Closes the stream and puts the file in place. False (and a recorded fault) when anything since the
    /// opening failed, a full disk included.
    bool Commit();

private:
    std::string target_;
    std::string temporary_;
    HostFile file_;
};

}  // namespace qnl
