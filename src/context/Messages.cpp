#include "context/Messages.h"

#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <sstream>

#include "platform/CQNLKNLogErrMsgTool.h"

namespace qnl {

namespace {

std::string FormatPlain(const char* format, std::va_list values) {
    std::va_list again;
    va_copy(again, values);
    const int length = std::vsnprintf(nullptr, 0, format, values);
    std::string text(static_cast<std::size_t>(length > 0 ? length : 0) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    text.pop_back();
    return text;
}

}  // namespace

void LogLine(const FrozenLayerJob& job, const std::string& text) {
    if (job.m_nLogLevel > 0) {
        CQNLKNLogErrMsgTool::printLogStringContent(text, "", std::cout);
    }
}

void LogGeneral(const FrozenLayerJob& job, const std::string& text) {
    if (job.m_nLogLevel > 0) {
        PrintGeneral(text);
    }
}

void PrintGeneral(const std::string& text) {
    CQNLKNLogErrMsgTool::printGeneralMessage(text, "", std::cout);
}

void LogSeconds(const FrozenLayerJob& job, const char* label, double seconds) {
    if (job.m_nLogLevel > 0) {
        std::ostringstream text;
        text << label << seconds << " seconds\n";
        PrintGeneral(text.str());
    }
}

void LogPlain(const FrozenLayerJob& job, const char* format, ...) {
    if (job.m_nLogLevel > 0) {
        std::va_list values;
        va_start(values, format);
        std::cout << FormatPlain(format, values);
        va_end(values);
    }
}

void PrintPlain(const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    std::cout << FormatPlain(format, values);
    va_end(values);
}

}  // namespace qnl
