#include "interop/ReaderGuard.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>

namespace qnl::interop {

namespace {

constexpr std::array<int, 4> kCrashes{SIGSEGV, SIGABRT, SIGFPE, SIGILL};

using Handler = void (*)(int);

/// What a signal handler may look at: nothing that allocates. Handlers are given no other data.
struct GuardState {
    std::array<char, 1024> sentence{};
    std::size_t length = 0;
    volatile std::sig_atomic_t active = 0;
    const host::SilencedError* silenced = nullptr;
    std::array<Handler, kCrashes.size()> handlers{};
};
GuardState state;

void EndWithSentence() {
    if (state.active != 0) {
        state.silenced->Write(state.sentence.data(), state.length);
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
    state.silenced = &silenced_;
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
    state.silenced = nullptr;
}

}  // namespace qnl::interop
