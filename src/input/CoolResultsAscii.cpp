#include <optional>

#include "input/AsciiSections.h"
#include "input/CoolResults.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "job/Messages.h"

namespace {

constexpr const char* kResults = "[PART VOLUME DATA]";
constexpr int kLinesBeforeRecords = 3;

struct CoolRecord {
    int id = 0;
    double temperature = 0.0;
    double coolingTime = 0.0;
    double unused = 0.0;
};

/// Null when the record is whole, else the log line that tells what is missing.
const char* ReadRecord(qnl::TokenReader& text, CoolRecord& record) {
    if (!text.ReadInt(record.id)) {
        return "scanf!=1 Reading cool data file Error !\n";
    }
    const bool whole = text.ReadDouble(record.temperature) && text.ReadDouble(record.coolingTime) &&
                       text.ReadDouble(record.unused);
    return whole ? nullptr : "scanf!=3 Reading cool data file Error !\n";
}

void StoreRecord(const qnl::NodeInputs& inputs, const qnl::StoredNodes& nodes, const CoolRecord& record,
                 int local) {
    inputs.data[0][local] = nodes.IsCleared(local) ? qnl::kClearedTemperature : record.temperature;
    inputs.data[4][local] = record.coolingTime;
}

bool ReadRecords(FrozenLayerJob& job, qnl::TokenReader& text, int count, const char* path) {
    const qnl::StoredNodes nodes(job);
    const qnl::NodeInputs inputs(job);
    qnl::UnknownIds unknown;
    const char* error = nullptr;
    for (int i = 1; error == nullptr && i <= count; ++i) {
        CoolRecord record;
        error = ReadRecord(text, record);
        if (error != nullptr) {
            LogGeneral(job, error);
            qnl::ReportShortRecord(path, text, i, "a node id and 3 numbers");
        } else if (!nodes.InRange(record.id)) {
            unknown.Add(record.id);
        } else if (const int local = nodes.Stored(record.id)) {
            StoreRecord(inputs, nodes, record, local);
        }
    }
    unknown.Report(path, "node records", nodes.MaxLabel());
    return error == nullptr;
}

}  // namespace

int ReadCoolResultsAscii(FrozenLayerJob& job, const char* path) {
    std::optional<qnl::TokenReader> text = qnl::OpenText(path);
    if (!text) {
        LogGeneral(job, "Cool results don't exist !\n");
        qnl::ReportMissing(path);
        return -1;
    }
    const bool whole = qnl::ReadSections(job, *text, path, kResults, kLinesBeforeRecords,
                                         [&](qnl::TokenReader& records, const qnl::AsciiHead& head) {
                                             return ReadRecords(job, records, head.nodes, path);
                                         });
    return whole ? 1 : -1;
}
