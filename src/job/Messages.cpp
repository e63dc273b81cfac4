#include "job/Messages.h"

#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <sstream>

#include "platform/CQNLKNLogErrMsgTool.h"

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
        std::vprintf(format, values);
        va_end(values);
    }
}

void PrintPlain(const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    std::vprintf(format, values);
    va_end(values);
}
