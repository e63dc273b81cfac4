#include "input/FlowResults.h"

#include <algorithm>
#include <cmath>

#include "input/BinaryResult.h"
#include "input/FlowSpeed.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "job/Messages.h"

namespace {

constexpr int kTemperature = 6;
constexpr int kGas = 9;
constexpr int kVelocityU = 11;
constexpr int kVelocityV = 12;
constexpr int kVelocityW = 13;
constexpr int kShrinkage = 14;
constexpr int kCoolingTime = 16;
constexpr int kDensity = 17;

constexpr qnl::OpenMessages kMessages{"Can't open FlowResults ", "Read FlowResults by ASCII ",
                                      "Read FlowResults by Binary "};

bool MayHaveGas(int analysisType) {
    return analysisType == 1 || analysisType == 6 || analysisType == 7 || analysisType == 8;
}

struct FlowItems {
    qnl::ItemValues temperature;
    qnl::ItemValues velocity[3];
    qnl::ItemValues shrinkage;
    qnl::ItemValues density;
    qnl::ItemValues gas;
    qnl::ItemValues coolingTime;
};

void SetItemFlags(FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader) {
    if (MayHaveGas(job.m_nAnalysisType)) {
        job.m_bIsGasIn = 1;
        LogGeneral(job, "is GasIN  \n");
    }
    for (const int item : qnl::ListItems(job, reader)) {
        if (item == kCoolingTime) {
            job.m_bFillHasCoolingTime = 1;
            LogGeneral(job, "is FillHasCoolingTime \n ");
        }
    }
}

FlowItems ReadItems(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader, int count) {
    const auto readIf = [&](bool wanted, int item, float fill) {
        return wanted ? qnl::ReadItem(reader, item, count, fill)
                      : qnl::ItemValues(qnl::ItemEntries(count), fill);
    };
    FlowItems items;
    items.temperature = readIf(true, kTemperature, 0.0F);
    items.velocity[0] = readIf(true, kVelocityU, 0.0F);
    items.velocity[1] = readIf(true, kVelocityV, 0.0F);
    items.velocity[2] = readIf(true, kVelocityW, 0.0F);
    items.shrinkage = readIf(true, kShrinkage, 0.0F);
    items.density = readIf(job.m_bHasIntermediateTimes == 1, kDensity, 0.0F);
    items.gas = readIf(job.m_bIsGasIn == 1, kGas, static_cast<float>(qnl::kFileNoGas));
    items.coolingTime = readIf(job.m_bFillHasCoolingTime == 1, kCoolingTime, 0.0F);
    return items;
}

void StoreNode(FrozenLayerJob& job, const qnl::NodeInputs& inputs, const FlowItems& items, std::size_t id,
               int local) {
    inputs.data[0][local] = static_cast<double>(items.temperature[id]);
    inputs.data[1][local] = static_cast<double>(items.shrinkage[id]);
    if (job.m_bHasIntermediateTimes == 1) {
        job.m_dMaxValue = std::max(job.m_dMaxValue, static_cast<double>(items.shrinkage[id]));
        inputs.data[5][local] = static_cast<double>(items.density[id]);
    }
    inputs.data[2][local] = qnl::StoredGas(static_cast<double>(items.gas[id]));
    const float u = items.velocity[0][id];
    const float v = items.velocity[1][id];
    const float w = items.velocity[2][id];
    inputs.data[3][local] = qnl::SpeedFromSquare(static_cast<double>(u * u + v * v + w * w));
    inputs.data[4][local] = static_cast<double>(items.coolingTime[id]);
    if (job.m_bHasFlow == 1) {
        inputs.vector[0][local] = u;
        inputs.vector[1][local] = v;
        inputs.vector[2][local] = w;
    }
}

}  // namespace

int ReadFlowResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::OpenedAs opened = qnl::OpenResult(job, reader, path, kMessages);
    if (opened != qnl::OpenedAs::Binary) {
        if (opened == qnl::OpenedAs::Nothing) {
            return -1;
        }
        ReadFlowResultsAscii(job, path);
        return 1;
    }
    LogPlain(job, "K4Fverson =%d \n", reader.GetResultVersion());
    SetItemFlags(job, reader);
    const int maxNode = reader.GetMaxCavityNode();
    LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const FlowItems items = ReadItems(job, reader, maxNode);
    const qnl::StoredNodes nodes(job);
    const qnl::NodeInputs inputs(job);
    const int last = std::min(maxNode, nodes.MaxLabel());
    for (int id = 1; id <= last; ++id) {
        if (const int local = nodes.Stored(id)) {
            StoreNode(job, inputs, items, static_cast<std::size_t>(id), local);
        }
    }
    reader.EndReading();
    qnl::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
