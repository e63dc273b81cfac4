#pragma once

/// Checks of what the program itself must hold true, made in the audit build only: the failed condition,
/// its place and two values go to standard error and the process aborts.
#ifdef QNL_AUDIT

#include <cstdio>
#include <cstdlib>

#define QNL_ASSERT(condition, first, second)                                                           \
    ((condition)                                                                                       \
         ? static_cast<void>(0)                                                                        \
         : (std::fprintf(stderr, "%s:%d: assertion %s failed, values %g and %g\n", __FILE__, __LINE__, \
                         #condition, static_cast<double>(first), static_cast<double>(second)),         \
            std::abort()))
#else
#define QNL_ASSERT(condition, first, second) static_cast<void>(0)
#endif
