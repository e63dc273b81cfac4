#include "output/OutputItems.h"

#include <cmath>
#include <cstdio>

#include "context/Messages.h"
#include "context/OutputQuantities.h"

namespace qnl::output {

namespace {

constexpr int kShrinkageItem = 16;
static_assert(QuantityOfItem(kShrinkageItem).array == &FrozenLayerJob::m_pMaxVolumeShrinkage);

void DescribeItems(FrozenLayerJob& job) {
    const RunTraits run = TraitsOf(job);
    if (!job.m_pOutputItems) {
        job.m_pOutputItems = std::make_unique<OutputItem[]>(kItemCount);
    }
    for (std::size_t i = 0; i < kItemCount; ++i) {
        const OutputQuantity& quantity = kOutputQuantities[kItemOrder[i]];
        OutputItem& item = job.m_pOutputItems[i];
        item.nItemID = quantity.item;
        std::snprintf(item.szName, sizeof item.szName, "%s", quantity.name);
        std::snprintf(item.szUnit, sizeof item.szUnit, "%s", quantity.unit);
        item.pData = (job.*quantity.array).get();
        item.bOutput = quantity.written(run) ? 1 : 0;
        job.m_nOutputItemCount += item.bOutput;
    }
}

void RaiseLimits(OutputItem& item, int nodes) {
    for (int v = 1; v <= nodes; ++v) {
        const double value = item.pData[v];
        if (value > item.dMax) {
            item.dMax = value;
        }
        if (value < item.dMin) {
            item.dMin = value;
        }
    }
}

void UpdateLimits(FrozenLayerJob& job) {
    for (int i = 0; i < job.m_nItemCount; ++i) {
        OutputItem& item = job.m_pOutputItems[static_cast<std::size_t>(i)];
        if (item.bOutput == 1) {
            RaiseLimits(item, job.m_nNodes);
            LogPlain(job, "Item = %d, Max=%g, Min=%g \n", i, item.dMax, item.dMin);
        }
    }
}

void DropZeroShrinkage(FrozenLayerJob& job) {
    constexpr double kZero = 1e-6;
    OutputItem& item = job.m_pOutputItems[kShrinkageItem - 1];
    if (std::fabs(item.dMax) < kZero && std::fabs(item.dMin) < kZero) {
        item.bOutput = 0;
        --job.m_nOutputItemCount;
    }
}

}  // namespace

int SetOutputItemInformation(FrozenLayerJob& job) {
    job.m_nItemCount = static_cast<int>(kItemCount);
    job.m_nOutputItemCount = 0;
    DescribeItems(job);
    UpdateLimits(job);
    DropZeroShrinkage(job);
    LogLine(job, "SetOutputItermInfor end");
    return 1;
}

}  // namespace qnl::output
