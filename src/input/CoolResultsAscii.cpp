#include <optional>

#include "context/Messages.h"
#include "input/AsciiSections.h"
#include "input/CoolResults.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"

namespace qnl::input {

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
const char* ReadRecord(TokenReader& text, CoolRecord& record) {
    if (!text.ReadInt(record.id)) {
        return "scanf!=1 Reading cool data file Error !\n";
    }
    const bool whole = text.ReadDouble(record.temperature) && text.ReadDouble(record.coolingTime) &&
                       text.ReadDouble(record.unused);
    return whole ? nullptr : "scanf!=3 Reading cool data file Error !\n";
}

void StoreRecord(const NodeInputs& inputs, const StoredNodes& nodes, const CoolRecord& record, NodeId node) {
    inputs.data[kTemperature][node] = nodes.IsCleared(node) ? kClearedTemperature : record.temperature;
    inputs.data[kCoolingTime][node] = record.coolingTime;
}

bool ReadRecords(FrozenLayerJob& job, TokenReader& text, int count, const char* path) {
    const StoredNodes nodes(job);
    const NodeInputs inputs(job);
    UnknownIds unknown;
    const char* error = nullptr;
    for (int i = 1; error == nullptr && i <= count; ++i) {
        CoolRecord record;
        error = ReadRecord(text, record);
        if (error != nullptr) {
            LogGeneral(job, error);
            ReportShortRecord(path, text, i, "a node id and 3 numbers");
        } else if (!nodes.InRange(NodeLabel(record.id))) {
            unknown.Add(record.id);
        } else if (const std::optional<NodeId> node = nodes.Stored(NodeLabel(record.id))) {
            StoreRecord(inputs, nodes, record, *node);
        }
    }
    unknown.Report(path, "node records", nodes.MaxLabel().Value());
    return error == nullptr;
}

}  // namespace

}  // namespace qnl::input

int ReadCoolResultsAscii(FrozenLayerJob& job, const char* path) {
    std::optional<qnl::TokenReader> text = qnl::OpenText(path);
    if (!text) {
        qnl::LogGeneral(job, "Cool results don't exist !\n");
        qnl::input::ReportMissing(path);
        return -1;
    }
    const bool whole =
        qnl::input::ReadSections(job, *text, path, qnl::input::kResults, qnl::input::kLinesBeforeRecords,
                                 [&](qnl::TokenReader& records, const qnl::input::AsciiHead& head) {
                                     return qnl::input::ReadRecords(job, records, head.nodes, path);
                                 });
    return whole ? 1 : -1;
}
