#include "input/CoolResults.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "context/Messages.h"
#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

constexpr OpenMessages kMessages{"Can't open ReadCoolResults ", "Read ReadCoolResults by ASCII ",
                                 "Read ReadCoolResults by Binary "};

struct CoolItems {
    std::vector<int> labels;  ///< of the entries, 1-based; empty: entry i belongs to label i
    ItemValues temperature;
    ItemValues coolingTime;
    ItemValues gas;
};

std::vector<int> ReadLabels(CQNL3DResultReader_Manipulator& reader, int count) {
    std::vector<int> labels;
    if (reader.GetResultDataIDMap(QNLRESULT_NODE)) {
        labels.resize(ItemEntries(count));
        if (!reader.GetResultDataIDArray(QNLRESULT_NODE, labels.data())) {
            labels.clear();
        }
    }
    return labels;
}

CoolItems ReadItems(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader, int count) {
    CoolItems items;
    items.labels = ReadLabels(reader, count);
    items.temperature = ReadItem(reader, kCoolTemperature, count);
    items.coolingTime = ReadItem(reader, kCoolCoolingTime, count);
    items.gas.resize(ItemEntries(count));
    if (reader.GetResultItem(kCoolGas, items.gas.data())) {
        LogLine(job, "Gas in cool result !");
    }
    return items;
}

void StoreEntries(FrozenLayerJob& job, const CoolItems& items, int count, const char* path) {
    const StoredNodes nodes(job);
    const NodeInputs inputs(job);
    const bool dense = items.labels.empty();
    const int last = dense ? std::min(count, nodes.MaxLabel().Value()) : count;
    UnknownIds unknown;
    for (int i = 1; i <= last; ++i) {
        const auto entry = static_cast<std::size_t>(i);
        const NodeLabel label(dense ? i : items.labels[entry]);
        if (!nodes.InRange(label)) {
            unknown.Add(label.Value());
        } else if (const std::optional<NodeId> node = nodes.Stored(label)) {
            inputs.data[kTemperature][*node] = static_cast<double>(items.temperature[entry]);
            inputs.data[kCoolingTime][*node] = static_cast<double>(items.coolingTime[entry]);
            inputs.data[kGasMarker][*node] = StoredGas(static_cast<double>(items.gas[entry]));
        }
    }
    unknown.Report(path, "node labels", nodes.MaxLabel().Value());
    if (dense) {
        ReportEntriesBeyond(path, count, nodes.MaxLabel());
    }
}

bool HasNoGasEntry(const ItemValues& gas) {
    return std::find(gas.begin() + 1, gas.end(), static_cast<float>(kFileNoGas)) != gas.end();
}

}  // namespace

}  // namespace qnl::input

int ReadCoolResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::input::OpenedAs opened = qnl::input::OpenResult(job, reader, path, qnl::input::kMessages);
    if (opened != qnl::input::OpenedAs::Binary) {
        if (opened == qnl::input::OpenedAs::Nothing) {
            return -1;
        }
        ReadCoolResultsAscii(job, path);
        return 1;
    }
    const int maxNode = reader.GetMaxCavityNode();
    qnl::LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const qnl::input::CoolItems items = qnl::input::ReadItems(job, reader, maxNode);
    qnl::input::StoreEntries(job, items, maxNode, path);
    reader.EndReading();
    job.m_bGasInCool = qnl::input::HasNoGasEntry(items.gas) ? 1 : 0;
    return 1;
}
