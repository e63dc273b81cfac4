#include "host/HostSystem.h"

#include <fcntl.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/HostThreads.h"

#ifdef _WIN32
#define NOMINMAX
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace qnl::host {

namespace {

constexpr int kStandardError = 2;

#ifdef _WIN32
constexpr const char* kNowhere = "NUL";
int Duplicate(int file) {
    return _dup(file);
}
void Replace(int source, int target) {
    _dup2(source, target);
}
int OpenForWriting(const char* path) {
    return _open(path, _O_WRONLY);
}
void Close(int file) {
    _close(file);
}
#else
constexpr const char* kNowhere = "/dev/null";
int Duplicate(int file) {
    return dup(file);
}
void Replace(int source, int target) {
    dup2(source, target);
}
int OpenForWriting(const char* path) {
    return open(path, O_WRONLY);
}
void Close(int file) {
    close(file);
}
#endif

}  // namespace

bool ErrorIsTerminal() {
#ifdef _WIN32
    return _isatty(kStandardError) != 0;
#else
    return isatty(kStandardError) != 0;
#endif
}

void UseUtf8Output() {
#ifdef _WIN32
    SetConsoleOutputCP(CP_UTF8);
#endif
}

std::string ProgramPath() {
#ifdef _WIN32
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return length == 0 || length == MAX_PATH ? std::string()
                                             : std::filesystem::path(path, path + length).string();
#else
    std::error_code failed;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", failed);
    return failed ? std::string() : path.string();
#endif
}

}  // namespace qnl::host

void qnl::LetIdleThreadsSleep(char** argv) {
#ifdef _WIN32
    static_cast<void>(argv);
#else
    if (std::getenv("OMP_WAIT_POLICY") == nullptr && std::getenv("GOMP_SPINCOUNT") == nullptr) {
        const std::string path = host::ProgramPath();
        setenv("OMP_WAIT_POLICY", "passive", 0);
        execv(path.c_str(), argv);
    }
#endif
}

namespace qnl::host {

SilencedError::SilencedError() : former_((std::fflush(stderr), Duplicate(kStandardError))) {
    const int nowhere = OpenForWriting(kNowhere);
    if (nowhere >= 0) {
        Replace(nowhere, kStandardError);
        Close(nowhere);
    }
}

SilencedError::~SilencedError() {
    std::fflush(stderr);
    if (former_ >= 0) {
        Replace(former_, kStandardError);
        Close(former_);
    }
}

void SilencedError::Write(const char* text, std::size_t length) const noexcept {
    const int target = former_ >= 0 ? former_ : kStandardError;
#ifdef _WIN32
    static_cast<void>(_write(target, text, static_cast<unsigned>(length)));
#else
    [[maybe_unused]] const auto written = write(target, text, length);
#endif
}

}  // namespace qnl::host
