#include "input/CoolResults.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "job/Messages.h"

namespace {

constexpr int kTemperature = 1;
constexpr int kCoolingTime = 2;
constexpr int kGas = 16;

constexpr qnl::OpenMessages kMessages{"Can't open ReadCoolResults ", "Read ReadCoolResults by ASCII ",
                                      "Read ReadCoolResults by Binary "};

struct CoolItems {
    std::vector<int> labels;  ///< of the entries, 1-based; empty: entry i belongs to label i
    qnl::ItemValues temperature;
    qnl::ItemValues coolingTime;
    qnl::ItemValues gas;
};

std::vector<int> ReadLabels(CQNL3DResultReader_Manipulator& reader, int count) {
    std::vector<int> labels;
    if (reader.GetResultDataIDMap(QNLRESULT_NODE)) {
        labels.resize(qnl::ItemEntries(count));
        if (!reader.GetResultDataIDArray(QNLRESULT_NODE, labels.data())) {
            labels.clear();
        }
    }
    return labels;
}

CoolItems ReadItems(FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader, int count) {
    CoolItems items;
    items.labels = ReadLabels(reader, count);
    items.temperature = qnl::ReadItem(reader, kTemperature, count);
    items.coolingTime = qnl::ReadItem(reader, kCoolingTime, count);
    items.gas.resize(qnl::ItemEntries(count));
    if (reader.GetResultItem(kGas, items.gas.data())) {
        LogLine(job, "Gas in cool result !");
        job.m_bGasInCool = 1;
    }
    return items;
}

void StoreEntries(FrozenLayerJob& job, const CoolItems& items, int count, const char* path) {
    const qnl::StoredNodes nodes(job);
    const qnl::NodeInputs inputs(job);
    const bool dense = items.labels.empty();
    const int last = dense ? std::min(count, nodes.MaxLabel()) : count;
    qnl::UnknownIds unknown;
    for (int i = 1; i <= last; ++i) {
        const auto entry = static_cast<std::size_t>(i);
        const int label = dense ? i : items.labels[entry];
        if (!nodes.InRange(label)) {
            unknown.Add(label);
        } else if (const int local = nodes.Stored(label)) {
            inputs.data[0][local] = static_cast<double>(items.temperature[entry]);
            inputs.data[4][local] = static_cast<double>(items.coolingTime[entry]);
            inputs.data[2][local] = qnl::StoredGas(static_cast<double>(items.gas[entry]));
        }
    }
    unknown.Report(path, "node labels", nodes.MaxLabel());
    if (dense) {
        qnl::ReportEntriesBeyond(path, count, nodes.MaxLabel());
    }
}

bool HasNoGasEntry(const qnl::ItemValues& gas) {
    return std::find(gas.begin() + 1, gas.end(), static_cast<float>(qnl::kFileNoGas)) != gas.end();
}

}  // namespace

int ReadCoolResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::OpenedAs opened = qnl::OpenResult(job, reader, path, kMessages);
    if (opened != qnl::OpenedAs::Binary) {
        if (opened == qnl::OpenedAs::Nothing) {
            return -1;
        }
        ReadCoolResultsAscii(job, path);
        return 1;
    }
    const int maxNode = reader.GetMaxCavityNode();
    LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const CoolItems items = ReadItems(job, reader, maxNode);
    StoreEntries(job, items, maxNode, path);
    reader.EndReading();
    if (job.m_bGasInCool == 1) {
        job.m_bGasInCool = HasNoGasEntry(items.gas) ? 1 : 0;
    }
    return 1;
}
