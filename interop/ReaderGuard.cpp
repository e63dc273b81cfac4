#include "ReaderGuard.h"

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace qnl {

namespace {

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
void Write(int file, const char* text, std::size_t length) {
    static_cast<void>(_write(file, text, static_cast<unsigned>(length)));
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
void Write(int file, const char* text, std::size_t length) {
    [[maybe_unused]] const auto written = write(file, text, length);
}
#endif

constexpr int kStandardError = 2;
constexpr std::array<int, 4> kCrashes{SIGSEGV, SIGABRT, SIGFPE, SIGILL};

using Handler = void (*)(int);

/// What a handler may look at: nothing that allocates.
struct GuardState {
    std::array<char, 1024> sentence{};
    std::size_t length = 0;
    volatile std::sig_atomic_t active = 0;
    int standardError = -1;
    std::array<Handler, kCrashes.size()> handlers{};
};
GuardState state;

void EndWithSentence() {
    if (state.active != 0) {
        Write(state.standardError >= 0 ? state.standardError : kStandardError, state.sentence.data(),
              state.length);
        std::_Exit(1);
    }
}

extern "C" void EndOverCrash(int) {
    EndWithSentence();
}

}  // namespace

ReaderGuard::ReaderGuard(const std::string& file) {
    [[maybe_unused]] static const int registered = std::atexit(EndWithSentence);
    const std::string sentence =
        "frozenlayer: " + file +
        " cannot be read (its reader broke down: the file is damaged); export it anew\n";
    state.length = std::min(sentence.size(), state.sentence.size());
    std::copy_n(sentence.data(), state.length, state.sentence.data());
    std::fflush(stderr);
    state.standardError = Duplicate(kStandardError);
    const int nowhere = OpenForWriting(kNowhere);
    if (nowhere >= 0) {
        Replace(nowhere, kStandardError);
        Close(nowhere);
    }
    for (std::size_t i = 0; i < kCrashes.size(); ++i) {
        state.handlers[i] = std::signal(kCrashes[i], EndOverCrash);
    }
    state.active = 1;
}

ReaderGuard::~ReaderGuard() {
    state.active = 0;
    for (std::size_t i = 0; i < kCrashes.size(); ++i) {
        std::signal(kCrashes[i], state.handlers[i]);
    }
    std::fflush(stderr);
    if (state.standardError >= 0) {
        Replace(state.standardError, kStandardError);
        Close(state.standardError);
        state.standardError = -1;
    }
}

}  // namespace qnl
