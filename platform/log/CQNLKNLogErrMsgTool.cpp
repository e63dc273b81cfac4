#include "platform/CQNLKNLogErrMsgTool.h"

#include <cerrno>
#include <exception>
#include <mutex>
#include <new>
#include <ostream>
#include <system_error>

#include "platform/Faults.h"
#include "platform/HostFiles.h"

namespace qnl::log {

namespace {

/// The log file that messages are appended to, and the tool that asked for it.
struct LogAttachment {
    std::mutex mutex;
    const CQNLKNLogErrMsgTool* owner = nullptr;
    std::string path;
    HostFile file;
};

LogAttachment& TheLog() {
    static LogAttachment log;
    return log;
}

void RecordLogFault(const std::string& path, const char* expected, const char* otherwise) {
    const std::string reason = errno != 0 ? std::generic_category().message(errno) : std::string(otherwise);
    RecordFault({path, "", expected, reason, "check the folder and the space on the disk"});
}

/// Flushed at once, so that the file is complete up to the moment at which a run breaks off. After a
/// failure nothing more is appended: a gap in the middle would go unnoticed.
void AppendToLog(const std::string& text) {
    LogAttachment& log = TheLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    if (!log.file) {
        return;
    }
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), log.file.Get()) == text.size() &&
                         std::fflush(log.file.Get()) == 0;
    if (!written) {
        RecordLogFault(log.path, "a log file that can be written", "not all text could be written");
        log.file.Close();
    }
}

void Print(const std::string& text, std::ostream& out) {
    out << text;
    out.flush();
    AppendToLog(text);
}

void PrintLine(std::string text, std::ostream& out) {
    if (text.empty() || text.back() != '\n') {
        text += '\n';
    }
    Print(text, out);
}

/// What the exception now being handled says; empty when none is.
std::string CurrentReason() {
    const std::exception_ptr current = std::current_exception();
    if (!current) {
        return {};
    }
    try {
        std::rethrow_exception(current);
    } catch (const std::bad_alloc&) {
        return "out of memory";
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown exception";
    }
}

}  // namespace

}  // namespace qnl::log

CQNLKNLogErrMsgTool::CQNLKNLogErrMsgTool() = default;

CQNLKNLogErrMsgTool::~CQNLKNLogErrMsgTool() {
    qnl::log::LogAttachment& log = qnl::log::TheLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    if (log.owner == this) {
        log.file.Close();
        log.owner = nullptr;
    }
}

int CQNLKNLogErrMsgTool::setData_Append(const char* logFile) {
    qnl::log::LogAttachment& log = qnl::log::TheLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.path = logFile != nullptr ? logFile : "";
    log.file = qnl::HostFile(log.path, "a");
    log.owner = this;
    if (!log.file) {
        qnl::log::RecordLogFault(log.path, "a log file that can be opened", "it cannot be opened");
        return -1;
    }
    return 1;
}

void CQNLKNLogErrMsgTool::printGeneralMessage(const std::string& text, const std::string& second,
                                              std::ostream& out) {
    qnl::log::Print(text + second, out);
}

void CQNLKNLogErrMsgTool::printLogStringContent(const std::string& text, const std::string& second,
                                                std::ostream& out) {
    qnl::log::PrintLine(text + second, out);
}

void CQNLKNLogErrMsgTool::printErrorMessageContent(int code, const std::string& text,
                                                   const std::string& second, std::ostream& out) {
    qnl::log::PrintLine("Error " + std::to_string(code) + ": " + text + second, out);
}

void CQNLKNLogErrMsgTool::printErrorOutofMemory(const std::string& text, std::ostream& out) {
    qnl::log::PrintLine(text + qnl::log::CurrentReason(), out);
}
