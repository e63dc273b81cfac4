#include <algorithm>
#include <iterator>
#include <optional>

#include "input/AsciiSections.h"
#include "input/FlowResults.h"
#include "input/FlowSpeed.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"

namespace qnl::input {

namespace {

constexpr int kGasHeadCode = 1012;
constexpr const char* kResults = "[RESULTS EOF]";

/// One node record: the columns after the node id.
struct FlowRecord {
    int id = 0;
    double column[15] = {};  ///< 1-based
    double gas = kFileNoGas;
};

bool ReadRecord(TokenReader& text, FlowRecord& record) {
    return text.ReadInt(record.id) && std::all_of(std::begin(record.column) + 1, std::end(record.column),
                                                  [&](double& value) { return text.ReadDouble(value); });
}

void StoreRecord(FrozenLayerJob& job, const NodeInputs& inputs, const FlowRecord& record, NodeId node) {
    const double* column = record.column;
    inputs.data[kTemperature][node] = column[3];
    inputs.data[kGasMarker][node] = StoredGas(record.gas);
    if (job.m_bHasIntermediateTimes == 1) {
        inputs.data[kVolumeShrinkage][node] = column[9];
        inputs.data[kGasMarker][node] = column[9];
        job.m_bIsGasIn = 1;
        job.m_dMaxValue = std::max(job.m_dMaxValue, column[9]);
    }
    const double square = column[6] * column[6] + column[7] * column[7] + column[8] * column[8];
    inputs.data[kSpeed][node] = SpeedFromSquare(square);
    if (job.m_bHasFlow == 1) {
        inputs.vector[0][node] = static_cast<float>(column[6]);
        inputs.vector[1][node] = static_cast<float>(column[7]);
        inputs.vector[2][node] = static_cast<float>(column[8]);
    }
}

void Clear(const NodeInputs& inputs, NodeId node) {
    inputs.data[kTemperature][node] = kClearedTemperature;
    inputs.data[kGasMarker][node] = kNoGas;
}

bool ReadRecords(FrozenLayerJob& job, TokenReader& text, const AsciiHead& head, const char* path) {
    const bool withGas = head.code == kGasHeadCode;
    const StoredNodes nodes(job);
    const NodeInputs inputs(job);
    UnknownIds unknown;
    bool complete = true;
    for (int i = 1; complete && i <= head.nodes; ++i) {
        FlowRecord record;
        complete = ReadRecord(text, record);
        if (complete && withGas) {
            job.m_bIsGasIn = 1;
            complete = text.ReadDouble(record.gas);
        }
        if (!complete) {
            ReportShortRecord(path, text, i,
                              withGas ? "a node id and 15 numbers" : "a node id and 14 numbers");
        } else if (!nodes.InRange(NodeLabel(record.id))) {
            unknown.Add(record.id);
        } else if (const std::optional<NodeId> node = nodes.Stored(NodeLabel(record.id))) {
            StoreRecord(job, inputs, record, *node);
            if (nodes.IsCleared(*node)) {
                Clear(inputs, *node);
            }
        }
    }
    unknown.Report(path, "node records", nodes.MaxLabel().Value());
    return complete;
}

}  // namespace

}  // namespace qnl::input

int ReadFlowResultsAscii(FrozenLayerJob& job, const char* path) {
    std::optional<qnl::TokenReader> text = qnl::OpenText(path);
    if (!text) {
        qnl::input::ReportMissing(path);
        return -1;
    }
    const bool whole =
        qnl::input::ReadSections(job, *text, path, qnl::input::kResults, 0,
                                 [&](qnl::TokenReader& records, const qnl::input::AsciiHead& head) {
                                     return qnl::input::ReadRecords(job, records, head, path);
                                 });
    return whole ? 1 : -1;
}
