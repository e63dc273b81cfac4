#include "input/AsciiSections.h"

#include <algorithm>

#include "platform/Faults.h"

namespace qnl::input {

void SkipLines(TokenReader& text, int count, std::string_view& line) {
    for (int i = 0; i < count && text.ReadLine(kLineBuffer, line); ++i) {
    }
}

namespace {

/// What follows a "[HEADER]" line. `line` becomes the last one passed.
void ReadHead(TokenReader& text, AsciiHead& head, std::string_view& line) {
    double unused = 0.0;
    if (text.ReadInt(head.code) && text.ReadDouble(unused)) {
        text.SkipBlanks();
    }
    SkipLines(text, 4, line);
    text.ReadInt(head.nodes);
}

/// What follows a "[TIME STEPS]" line: the number of lines goes to m_nAsciiItemCount, their joined text,
/// unless it is too long for it, to m_szTimeSteps. `line` becomes the last one passed.
void ReadTimeSteps(FrozenLayerJob& job, TokenReader& text, std::string_view& line) {
    if (text.ReadInt(job.m_nAsciiItemCount)) {
        text.SkipBlanks();
    }
    std::string joined;
    for (int i = 0; i < job.m_nAsciiItemCount && text.ReadLine(kLineBuffer, line); ++i) {
        joined += line;
        joined.resize(std::min(joined.size(), sizeof job.m_szTimeSteps));
    }
    if (joined.size() < sizeof job.m_szTimeSteps) {
        *std::copy(joined.begin(), joined.end(), job.m_szTimeSteps) = '\0';
    }
}

}  // namespace

bool ReadSections(FrozenLayerJob& job, TokenReader& text, const char* path, const char* marker,
                  int skippedLines, const RecordReader& readRecords) {
    AsciiHead head;
    bool anyRecords = false;
    std::string_view line;
    while (text.ReadLine(kLineBuffer, line)) {
        if (Holds(line, "[HEADER]")) {
            ReadHead(text, head, line);
        }
        if (Holds(line, "[TIME STEPS]")) {
            ReadTimeSteps(job, text, line);
        }
        if (Holds(line, marker)) {
            SkipLines(text, skippedLines, line);
            anyRecords = anyRecords || head.nodes >= 1;
            if (!readRecords(text, head)) {
                return false;
            }
        }
    }
    if (!anyRecords) {
        ReportNoRecords(path, marker);
    }
    return true;
}

void ReportShortRecord(const char* path, const TokenReader& text, int record, const std::string& expected) {
    RecordFault({path,
                 "node record " + std::to_string(record) + ", line " + std::to_string(text.LineNumber()),
                 expected, "a record that ends early or holds something else",
                 "write the result again; values before this record were taken"});
}

void ReportNoRecords(const char* path, const char* marker) {
    RecordFault({path, marker, "a header with a count of nodes, then node records", "none",
                 "check that this is a result of the stage in question"});
}

void ReportMissing(const char* path) {
    RecordFault({path, "", "a result file", "a file that cannot be opened", "check the path and its rights"});
}

}  // namespace qnl::input
