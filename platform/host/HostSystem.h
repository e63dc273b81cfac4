#pragma once

#include <cstddef>
#include <string>

// What only the operating system can tell or do; the one place with code of one system or the other.
namespace qnl::host {

/// Whether somebody watches standard error.
bool ErrorIsTerminal();

/// Lets the console show UTF-8 text; does nothing where it does so anyway.
void UseUtf8Output();

/// Path of the running program; empty where the system does not tell.
std::string ProgramPath();

/// While it lives, what is written to standard error is dropped. One at a time.
class SilencedError {
public:
    SilencedError();
    ~SilencedError();
    SilencedError(const SilencedError&) = delete;
    SilencedError& operator=(const SilencedError&) = delete;

    /// Writes to where standard error went before. Allocates nothing: a signal handler may call it.
    void Write(const char* text, std::size_t length) const noexcept;

private:
    int former_;  ///< descriptor; -1 when there was none
};

}  // namespace qnl::host
