#include "Terminal.h"

#include <cstdio>

#ifdef _WIN32
#define NOMINMAX
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace qnl {

namespace {

bool IsTerminal(std::FILE* stream) {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

}  // namespace

bool OutputIsTerminal() {
    return IsTerminal(stdout);
}

bool ErrorIsTerminal() {
    return IsTerminal(stderr);
}

void UseUtf8Output() {
#ifdef _WIN32
    SetConsoleOutputCP(CP_UTF8);
#endif
}

}  // namespace qnl
