#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "host/Interrupts.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"

namespace fs = std::filesystem;

namespace qnl {

namespace {

std::string LastReason(const char* otherwise) {
    return errno != 0 ? std::generic_category().message(errno) : std::string(otherwise);
}

/// A name beside the target that no other call of this process has given. It does not grow with the
/// target's own name, which may be as long as the file system allows.
std::string TemporaryName(const std::string& target) {
    static std::atomic<std::uint64_t> calls{0};
    const auto ticks =
        static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    const std::uint64_t mixed = (ticks + ++calls) * 0x9E3779B97F4A7C15u;
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "~%016llx.tmp", static_cast<unsigned long long>(mixed));
    return (fs::path(target).parent_path() / name.data()).string();
}

/// The file that a name stands for: itself, or what it links to.
std::string Resolved(const std::string& path) {
    std::error_code failed;
    if (!fs::is_symlink(path, failed)) {
        return path;
    }
    const fs::path target = fs::canonical(path, failed);
    return failed ? path : target.string();
}

/// True for devices and pipes: they are written in place, since a rename would put a file where they are.
bool IsDevice(const std::string& path) {
    std::error_code failed;
    return fs::is_other(path, failed);
}

/// Opens a temporary file that did not exist before; `name` receives its name, empty on failure.
HostFile OpenTemporary(const std::string& target, const char* mode, std::string& name) {
    const std::string exclusive = std::string(mode) + "x";
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        name = TemporaryName(target);
        HostFile file(name, exclusive.c_str());
        if (file || errno != EEXIST) {
            if (!file) {
                name.clear();
            }
            return file;
        }
    }
    name.clear();
    return {};
}

constexpr const char* kMakeRoom = "free space on the disk, or allow writing in its folder, and run again";

void RecordUnwritten(const std::string& target, const std::string& reason, const char* remedy = kMakeRoom) {
    RecordFault({target, "", "a file that can be written", reason, remedy});
}

}  // namespace

ReplacedFile::ReplacedFile(std::string_view path, const char* mode) : target_(Resolved(HostPath(path))) {
    std::error_code ignored;
    if (target_.empty()) {
        RecordUnwritten(target_, "no name", "name a file");
        return;
    }
    if (fs::is_directory(target_, ignored)) {
        RecordUnwritten(target_, "a folder of that name",
                        "move the folder away, or give it another name, and run again");
        return;
    }
    file_ = IsDevice(target_) ? HostFile(target_, mode) : OpenTemporary(target_, mode, temporary_);
    if (!file_) {
        RecordUnwritten(target_, LastReason("it cannot be opened"));
    }
}

ReplacedFile::~ReplacedFile() {
    file_.Close();
    if (!temporary_.empty()) {
        std::error_code ignored;
        fs::remove(temporary_, ignored);
    }
}

void ReplacedFile::Append(std::string_view text) {
    host::RaiseIfInterrupted();
    if (file_) {
        std::fwrite(text.data(), 1, text.size(), file_.Get());
    }
}

bool ReplacedFile::Commit() {
    if (!file_) {
        return false;
    }
    const bool written = file_.Close();
    if (!written) {
        RecordUnwritten(target_, LastReason("not all data could be written"));
        return false;
    }
    if (temporary_.empty()) {
        return true;
    }
    std::error_code failed;
    fs::rename(temporary_, target_, failed);
    if (failed) {
        RecordUnwritten(target_, failed.message());
        return false;
    }
    temporary_.clear();
    return true;
}

}  // namespace qnl
