#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "job/FrozenLayerJob.h"
#include "job/TokenReader.h"

namespace qnl {

/// Lines of the text layouts are read into a buffer of this many bytes.
constexpr std::size_t kLineBuffer = 1024;

inline bool Holds(std::string_view line, std::string_view marker) {
    return line.find(marker) != std::string_view::npos;
}

/// Head numbers of the flow and cool layouts; they keep what an earlier section gave when a number cannot
/// be read.
struct AsciiHead {
    int code = 0;
    int nodes = 0;  ///< number of node records
};

/// Reads on over `count` lines; `line` is then the last of them that exists.
void SkipLines(TokenReader& text, int count, std::string_view& line);

/// What follows a "[HEADER]" line of the flow and cool layouts. `line` becomes the last one passed.
void ReadHead(TokenReader& text, AsciiHead& head, std::string_view& line);

/// What follows a "[TIME STEPS]" line: the number of lines goes to m_nAsciiItemCount, their joined text,
/// unless it is too long for it, to m_szTimeSteps. `line` becomes the last one passed.
void ReadTimeSteps(FrozenLayerJob& job, TokenReader& text, std::string_view& line);

/// Records that record `record` (from 1) of a text layout is not what the layout asks for.
void ReportShortRecord(const char* path, const TokenReader& text, int record, const std::string& expected);

/// Records that the file had no node records.
void ReportNoRecords(const char* path, const char* marker);

/// Records that the file cannot be opened.
void ReportMissing(const char* path);

}  // namespace qnl
