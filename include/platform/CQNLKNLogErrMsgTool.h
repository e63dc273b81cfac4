#pragma once

#include <iosfwd>
#include <string>

/// Message printing. Every text goes to the given stream and, once a log file is appended to, also to
/// the end of that file as plain text.
///
/// The print operations are static; the instance owns the attachment of the log file, which ends with
/// it. `second` is printed after `text`; the program always passes an empty one.
class CQNLKNLogErrMsgTool {
public:
    CQNLKNLogErrMsgTool();
    virtual ~CQNLKNLogErrMsgTool();
    CQNLKNLogErrMsgTool(const CQNLKNLogErrMsgTool&) = delete;
    CQNLKNLogErrMsgTool& operator=(const CQNLKNLogErrMsgTool&) = delete;

    /// Appends all later messages to this file too. Gives 1, or -1 when it cannot be opened (messages
    /// then go to their streams only).
    int setData_Append(const char* logFile);

    /// Prints the text as it is.
    static void printGeneralMessage(const std::string& text, const std::string& second, std::ostream& out);

    /// Prints the text as a line of its own: a line end is added unless the text ends with one.
    static void printLogStringContent(const std::string& text, const std::string& second, std::ostream& out);

    /// Prints "Error <code>: " and the text as a line of its own.
    static void printErrorMessageContent(int code, const std::string& text, const std::string& second,
                                         std::ostream& out);

    /// Prints the text and what the exception now being handled says (out of memory, or its own words).
    static void printErrorOutofMemory(const std::string& text, std::ostream& out);
};
