#include "whole_run/ChildProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <type_traits>

static_assert(std::is_trivially_copyable_v<RunFigures>);

namespace {

[[noreturn]] void WorkAndExit(const std::function<RunFigures()>& work, int out) {
    int status = 1;
    try {
        const RunFigures figures = work();
        const ssize_t written = write(out, &figures, sizeof figures);
        status = written == static_cast<ssize_t>(sizeof figures) ? 0 : 1;
    } catch (const std::exception& failure) {
        std::cerr << std::string("whole run: ") + failure.what() + "\n";
    }
    std::cout.flush();
    std::fflush(nullptr);
    _exit(status);
}

}  // namespace

RunFigures InChildProcess(const std::function<RunFigures()>& work) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe can be made");
    }
    std::cout.flush();
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no process can be made");
    }
    if (child == 0) {
        close(ends[0]);
        WorkAndExit(work, ends[1]);
    }
    close(ends[1]);
    RunFigures figures;
    const bool read = ::read(ends[0], &figures, sizeof figures) == static_cast<ssize_t>(sizeof figures);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!read || status != 0) {
        throw std::runtime_error("a run did not end well");
    }
    return figures;
}
