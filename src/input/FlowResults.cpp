#include "input/FlowResults.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "context/Messages.h"
#include "input/BinaryResult.h"
#include "input/FlowSpeed.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

constexpr OpenMessages kMessages{"Can't open FlowResults ", "Read FlowResults by ASCII ",
                                 "Read FlowResults by Binary "};

struct FlowItems {
    ItemValues temperature;
    ItemValues velocity[3];
    ItemValues shrinkage;
    ItemValues density;
    ItemValues gas;
    ItemValues coolingTime;
};

void SetItemFlags(FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader) {
    if (FindAnalysisCode(job.m_nAnalysisType).mayHaveGas) {
        job.m_bIsGasIn = 1;
        LogGeneral(job, "is GasIN  \n");
    }
    for (const ListedItem& listed : ListItems(job, reader)) {
        if (listed.id == kFlowCoolingTime) {
            job.m_bFillHasCoolingTime = 1;
            LogGeneral(job, "is FillHasCoolingTime \n ");
        }
    }
}

FlowItems ReadItems(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader, int count) {
    const auto readIf = [&](bool wanted, int item, float fill) {
        return wanted ? ReadItem(reader, item, count, fill) : ItemValues(ItemEntries(count), fill);
    };
    FlowItems items;
    items.temperature = readIf(true, kFlowTemperature, 0.0F);
    items.velocity[0] = readIf(true, kFlowVelocityU, 0.0F);
    items.velocity[1] = readIf(true, kFlowVelocityV, 0.0F);
    items.velocity[2] = readIf(true, kFlowVelocityW, 0.0F);
    items.shrinkage = readIf(true, kFlowShrinkage, 0.0F);
    items.density = readIf(job.m_bHasIntermediateTimes == 1, kFlowDensity, 0.0F);
    items.gas = readIf(job.m_bIsGasIn == 1, kFlowGas, static_cast<float>(kFileNoGas));
    items.coolingTime = readIf(job.m_bFillHasCoolingTime == 1, kFlowCoolingTime, 0.0F);
    return items;
}

void StoreNode(FrozenLayerJob& job, const NodeInputs& inputs, const FlowItems& items, std::size_t entry,
               NodeId node) {
    inputs.data[kTemperature][node] = static_cast<double>(items.temperature[entry]);
    inputs.data[kVolumeShrinkage][node] = static_cast<double>(items.shrinkage[entry]);
    if (job.m_bHasIntermediateTimes == 1) {
        job.m_dMaxValue = std::max(job.m_dMaxValue, static_cast<double>(items.shrinkage[entry]));
        inputs.data[kDensity][node] = static_cast<double>(items.density[entry]);
    }
    inputs.data[kGasMarker][node] = StoredGas(static_cast<double>(items.gas[entry]));
    const float u = items.velocity[0][entry];
    const float v = items.velocity[1][entry];
    const float w = items.velocity[2][entry];
    inputs.data[kSpeed][node] = SpeedFromSquare(static_cast<double>(u * u + v * v + w * w));
    inputs.data[kCoolingTime][node] = static_cast<double>(items.coolingTime[entry]);
    if (job.m_bHasFlow == 1) {
        inputs.vector[0][node] = u;
        inputs.vector[1][node] = v;
        inputs.vector[2][node] = w;
    }
}

}  // namespace

}  // namespace qnl::input

int ReadFlowResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::input::OpenedAs opened = qnl::input::OpenResult(job, reader, path, qnl::input::kMessages);
    if (opened != qnl::input::OpenedAs::Binary) {
        if (opened == qnl::input::OpenedAs::Nothing) {
            return -1;
        }
        ReadFlowResultsAscii(job, path);
        return 1;
    }
    qnl::LogPlain(job, "K4Fverson =%d \n", reader.GetResultVersion());
    qnl::input::SetItemFlags(job, reader);
    const int maxNode = reader.GetMaxCavityNode();
    qnl::LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const qnl::input::FlowItems items = qnl::input::ReadItems(job, reader, maxNode);
    const qnl::input::StoredNodes nodes(job);
    const qnl::input::NodeInputs inputs(job);
    const qnl::NodeLabel last = std::min(qnl::NodeLabel(maxNode), nodes.MaxLabel());
    for (qnl::NodeLabel label(1); label <= last; ++label) {
        if (const std::optional<qnl::NodeId> node = nodes.Stored(label)) {
            qnl::input::StoreNode(job, inputs, items, static_cast<std::size_t>(label.Value()), *node);
        }
    }
    reader.EndReading();
    qnl::input::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
