#include <algorithm>
#include <optional>
#include <string>

#include "context/Messages.h"
#include "input/AsciiSections.h"
#include "input/InputFaults.h"
#include "input/WarpResults.h"
#include "platform/Faults.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

constexpr const char* kResults = "[RESULTS EOW]";
constexpr int kLayouts[] = {14, 17, 26, 29};  // numbers per record
constexpr int kShrinkage = kWarpShrinkage;    // columns are numbered as items

struct WarpHead {
    int nodes = 0;
    int values = 0;  ///< numbers per record
};

/// Reads integers as long as they follow each other, at most five.
void ReadHead(TokenReader& text, WarpHead& head, std::string_view& line) {
    SkipLines(text, 5, line);
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
    bool hasShrinkage = false;

    bool Read(TokenReader& text, int values) {
        if (!text.ReadInt(id)) {
            return false;
        }
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

/// What stands in the place of the label counts as the node itself.
void Store(FrozenLayerJob& job, const WarpScan& scan) {
    const NodeId node(scan.id);
    job.m_pNodeData[kVolumeShrinkage][node.Value()] = scan.shrinkage;
    job.m_dMaxValue = std::max(job.m_dMaxValue, scan.shrinkage);
}

void ReadRecords(FrozenLayerJob& job, TokenReader& text, const WarpHead& head, const char* path) {
    WarpScan scan;
    UnknownIds unknown;
    bool whole = true;
    for (int i = 1; i <= head.nodes; ++i) {
        const std::size_t before = text.Position();
        const bool read = scan.Read(text, head.values);
        if (!read && whole) {
            whole = false;
            ReportShortRecord(path, text, i, "a node index and " + std::to_string(head.values) + " numbers");
        }
        if (scan.hasShrinkage) {
            if (scan.id >= 1 && scan.id <= job.m_nNodes) {
                Store(job, scan);
            } else if (read) {
                unknown.Add(scan.id);
            }
        }
        if (text.Position() == before) {
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

}  // namespace qnl::input

int ReadWarpResultsAscii(FrozenLayerJob& job, const char* path) {
    std::optional<qnl::TokenReader> text = qnl::OpenText(path);
    if (!text) {
        qnl::LogGeneral(job, "Warp results don't exist !\n");
        qnl::input::ReportMissing(path);
        return -1;
    }
    qnl::input::WarpHead head;
    bool anyRecords = false;
    std::string_view line;
    while (text->ReadLine(qnl::input::kLineBuffer, line)) {
        if (qnl::Holds(line, "[HEADER]")) {
            qnl::input::ReadHead(*text, head, line);
        }
        if (qnl::Holds(line, qnl::input::kResults) && head.nodes >= 1) {
            anyRecords = true;
            if (std::find(std::begin(qnl::input::kLayouts), std::end(qnl::input::kLayouts), head.values) ==
                std::end(qnl::input::kLayouts)) {
                qnl::input::ReportMismatch(job, path, head.values);
            } else {
                qnl::input::ReadRecords(job, *text, head, path);
            }
        }
    }
    if (!anyRecords) {
        qnl::input::ReportNoRecords(path, qnl::input::kResults);
    }
    return 1;
}
