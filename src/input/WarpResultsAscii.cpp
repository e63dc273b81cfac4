#include <algorithm>
#include <optional>
#include <string>

#include "input/AsciiSections.h"
#include "input/InputFaults.h"
#include "input/WarpResults.h"
#include "job/Messages.h"
#include "platform/Faults.h"

namespace {

constexpr const char* kResults = "[RESULTS EOW]";
constexpr int kLayouts[] = {14, 17, 26, 29};  // numbers per record
constexpr int kShrinkage = 7;

struct WarpHead {
    int nodes = 0;
    int values = 0;  ///< numbers per record
};

/// Reads integers as long as they follow each other, at most five.
void ReadHead(qnl::TokenReader& text, WarpHead& head, std::string_view& line) {
    qnl::SkipLines(text, 5, line);
    int unused = 0;
    int* const fields[] = {&head.nodes, &unused, &unused, &head.values, &unused};
    for (int* field : fields) {
        text.ReadInt(*field);
    }
}

/// What the scans of the records have given so far; a scan that breaks off leaves the rest as it was.
struct WarpScan {
    int id = 0;
    double shrinkage = 0.0;
    bool hasId = false;
    bool hasShrinkage = false;

    bool Read(qnl::TokenReader& text, int values) {
        if (!text.ReadInt(id)) {
            return false;
        }
        hasId = true;
        double unused = 0.0;
        for (int k = 1; k <= values; ++k) {
            if (!text.ReadDouble(k == kShrinkage ? shrinkage : unused)) {
                return false;
            }
            hasShrinkage = hasShrinkage || k == kShrinkage;
        }
        return true;
    }
};

void Store(FrozenLayerJob& job, const WarpScan& scan) {
    job.m_pNodeData[1].get()[scan.id] = scan.shrinkage;
    job.m_dMaxValue = std::max(job.m_dMaxValue, scan.shrinkage);
}

void ReadRecords(FrozenLayerJob& job, qnl::TokenReader& text, const WarpHead& head, const char* path) {
    WarpScan scan;
    qnl::UnknownIds unknown;
    bool whole = true;
    for (int i = 1; i <= head.nodes; ++i) {
        const std::size_t before = text.Position();
        const bool read = scan.Read(text, head.values);
        if (!read && whole) {
            whole = false;
            qnl::ReportShortRecord(path, text, i,
                                   "a node index and " + std::to_string(head.values) + " numbers");
        }
        if (scan.hasId && scan.hasShrinkage) {
            if (scan.id >= 1 && scan.id <= job.m_nNodes) {
                Store(job, scan);
            } else if (read) {
                unknown.Add(scan.id);
            }
        }
        if (!read && text.Position() == before) {
            break;  // every later scan would stop here too
        }
    }
    unknown.Report(path, "node records", job.m_nNodes);
}

void ReportMismatch(const FrozenLayerJob& job, const char* path, int values) {
    LogLine(job, "Warp deformation results don't match.");
    RecordFault({path, "numbers per node record", "14, 17, 26 or 29", std::to_string(values),
                 "write the result in one of these layouts; nothing was taken from it"});
}

}  // namespace

int ReadWarpResultsAscii(FrozenLayerJob& job, const char* path) {
    std::optional<qnl::TokenReader> text = qnl::OpenText(path);
    if (!text) {
        LogGeneral(job, "Warp results don't exist !\n");
        qnl::ReportMissing(path);
        return -1;
    }
    WarpHead head;
    bool anyRecords = false;
    std::string_view line;
    while (text->ReadLine(qnl::kLineBuffer, line)) {
        if (qnl::Holds(line, "[HEADER]")) {
            ReadHead(*text, head, line);
        }
        if (qnl::Holds(line, kResults) && head.nodes >= 1) {
            anyRecords = true;
            if (std::find(std::begin(kLayouts), std::end(kLayouts), head.values) == std::end(kLayouts)) {
                ReportMismatch(job, path, head.values);
            } else {
                ReadRecords(job, *text, head, path);
            }
        }
    }
    if (!anyRecords) {
        qnl::ReportNoRecords(path, kResults);
    }
    return 1;
}
