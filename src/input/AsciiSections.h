#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "base/TokenReader.h"
#include "context/FrozenLayerJob.h"

namespace qnl::input {

/// Lines of the text layouts are read into a buffer of this many bytes.
constexpr std::size_t kLineBuffer = 1024;

/// Head numbers of the flow and cool layouts; they keep what an earlier section gave when a number cannot
/// be read.
struct AsciiHead {
    int code = 0;
    int nodes = 0;  ///< number of node records
};

/// Reads on over `count` lines; `line` is then the last of them that exists.
void SkipLines(TokenReader& text, int count, std::string_view& line);

/// Reads the records that follow a marker line; false ends the reading.
using RecordReader = std::function<bool(TokenReader& text, const AsciiHead& head)>;

/// Reads a text of the flow or cool layout: heads and time steps where their lines stand and, behind each
/// line that holds `marker`, `skippedLines` lines and the records, however many the head counts. Gives
/// false when `readRecords` did; a text without records is recorded as a fault.
bool ReadSections(FrozenLayerJob& job, TokenReader& text, const char* path, const char* marker,
                  int skippedLines, const RecordReader& readRecords);

/// Records that record `record` (from 1) of a text layout is not what the layout asks for.
void ReportShortRecord(const char* path, const TokenReader& text, int record, const std::string& expected);

/// Records that the file had no node records.
void ReportNoRecords(const char* path, const char* marker);

/// Records that the file cannot be opened.
void ReportMissing(const char* path);

}  // namespace qnl::input
