#pragma once

#include <string>

#include "context/FrozenLayerJob.h"

namespace qnl {

/// Every message of the program is composed here. "Log" messages appear only at a log level above 0;
/// all go to standard output.

/// A log line of its own.
void LogLine(const FrozenLayerJob& job, const std::string& text);

/// A general message, printed as it stands.
void LogGeneral(const FrozenLayerJob& job, const std::string& text);

/// A general message whatever the log level.
void PrintGeneral(const std::string& text);

/// `label`, the seconds in the default format of a text stream, " seconds" and a line end.
void LogSeconds(const FrozenLayerJob& job, const char* label, double seconds);

#if defined(__GNUC__)
#define QNL_PRINTF_LIKE(text, values) __attribute__((format(printf, text, values)))
#else
#define QNL_PRINTF_LIKE(text, values)
#endif

/// Plain formatted printing, past the log file.
void LogPlain(const FrozenLayerJob& job, const char* format, ...) QNL_PRINTF_LIKE(2, 3);

/// Plain formatted printing whatever the log level.
void PrintPlain(const char* format, ...) QNL_PRINTF_LIKE(1, 2);

}  // namespace qnl
