#include "input/FlowResults.h"

#include <algorithm>
#include <cmath>

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

void StoreNode(FrozenLayerJob& job, const NodeInputs& inputs, const FlowItems& items, std::size_t id,
               int local) {
    inputs.data[kTemperature][local] = static_cast<double>(items.temperature[id]);
    inputs.data[kVolumeShrinkage][local] = static_cast<double>(items.shrinkage[id]);
    if (job.m_bHasIntermediateTimes == 1) {
        job.m_dMaxValue = std::max(job.m_dMaxValue, static_cast<double>(items.shrinkage[id]));
        inputs.data[kDensity][local] = static_cast<double>(items.density[id]);
    }
    inputs.data[kGasMarker][local] = StoredGas(static_cast<double>(items.gas[id]));
    const float u = items.velocity[0][id];
    const float v = items.velocity[1][id];
    const float w = items.velocity[2][id];
    inputs.data[kSpeed][local] = SpeedFromSquare(static_cast<double>(u * u + v * v + w * w));
    inputs.data[kCoolingTime][local] = static_cast<double>(items.coolingTime[id]);
    if (job.m_bHasFlow == 1) {
        inputs.vector[0][local] = u;
        inputs.vector[1][local] = v;
        inputs.vector[2][local] = w;
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
    const int last = std::min(maxNode, nodes.MaxLabel());
    for (int id = 1; id <= last; ++id) {
        if (const int local = nodes.Stored(id)) {
            qnl::input::StoreNode(job, inputs, items, static_cast<std::size_t>(id), local);
        }
    }
    reader.EndReading();
    qnl::input::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
