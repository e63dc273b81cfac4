#pragma once

#include <string>

#include "host/HostSystem.h"

namespace qnl::interop {

/// While it lives, libraries print nothing on standard error, and one that crashes or ends the program over a
/// damaged file ends it with one sentence about `file` and exit code 1. One at a time; it ends before
/// anything else is written there.
class ReaderGuard {
public:
    explicit ReaderGuard(const std::string& file);
    ~ReaderGuard();
    ReaderGuard(const ReaderGuard&) = delete;
    ReaderGuard& operator=(const ReaderGuard&) = delete;

private:
    host::SilencedError silenced_;
};

}  // namespace qnl::interop
