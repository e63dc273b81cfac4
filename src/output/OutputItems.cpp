#include "output/OutputItems.h"

#include <cmath>
#include <cstring>

#include "context/Messages.h"

namespace qnl::output {

namespace {

using Job = FrozenLayerJob;

bool Always(const Job&) {
    return true;
}
bool Cool(const Job& job) {
    return job.m_bHasCool == 1;
}
bool NotCool(const Job& job) {
    return job.m_bHasCool != 1;
}
bool Gas(const Job& job) {
    return NotCool(job) && job.m_bIsGasIn == 1;
}
bool FillCooling(const Job& job) {
    return NotCool(job) && job.m_bFillHasCoolingTime == 1;
}
bool IntermediateTimes(const Job& job) {
    return NotCool(job) && job.m_bHasIntermediateTimes == 1;
}
bool Flow(const Job& job) {
    return NotCool(job) && job.m_bHasFlow == 1;
}
bool Flake(const Job& job) {
    return NotCool(job) && job.m_bIsFlakeLightIntensity == 1;
}

constexpr int kShrinkageItem = 16;

template <std::size_t Size>
void CopyText(char (&target)[Size], const char* text) {
    std::strncpy(target, text, Size - 1);
    target[Size - 1] = '\0';
}

void DescribeItems(Job& job) {
    if (!job.m_pOutputItems) {
        job.m_pOutputItems = std::make_unique<OutputItem[]>(kItemCount);
    }
    for (std::size_t i = 0; i < kItemCount; ++i) {
        const ItemDefinition& definition = kItemDefinitions[i];
        OutputItem& item = job.m_pOutputItems[i];
        item.nItemID = definition.id;
        CopyText(item.szName, definition.name);
        CopyText(item.szUnit, definition.unit);
        item.pData = (job.*definition.source).get();
        item.bOutput = definition.written(job) ? 1 : 0;
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

void UpdateLimits(Job& job) {
    for (int i = 0; i < kItemCount; ++i) {
        OutputItem& item = job.m_pOutputItems[static_cast<std::size_t>(i)];
        if (item.bOutput == 1) {
            RaiseLimits(item, job.m_nNodes);
            LogPlain(job, "Item = %d, Max=%g, Min=%g \n", i, item.dMax, item.dMin);
        }
    }
}

void DropZeroShrinkage(Job& job) {
    constexpr double kZero = 1e-6;
    OutputItem& item = job.m_pOutputItems[kShrinkageItem - 1];
    if (std::fabs(item.dMax) < kZero && std::fabs(item.dMin) < kZero) {
        item.bOutput = 0;
        --job.m_nOutputItemCount;
    }
}

}  // namespace

const std::array<ItemDefinition, kItemCount> kItemDefinitions{{
    {1, "Frozen_Ratio", "--", &Job::m_pFrozenRatio, Always},
    {2, "Max_Temperature", "oC", &Job::m_pMaxTemperature, Always},
    {3, "Center_Temperature", "oC", &Job::m_pCenterTemperature, Always},
    {4, "Average_Temperature", "oC", &Job::m_pAverageTemperature, Always},
    {5, "Bulk_Temperature", "oC", &Job::m_pBulkTemperature, NotCool},
    {6, "Skin_Ratio", "--", &Job::m_pSkinRatio, Gas},
    {7, "Mold_Temperature_Diff", "oC", &Job::m_pMoldTemperatureDiff, Cool},
    {8, "Max_CoolingTime", "oC", &Job::m_pMaxCoolingTime, Cool},
    {9, "Skin_Thickness", "mm", &Job::m_pSkinThickness, Gas},
    {10, "Fill_MaxCoolingTime", "oC", &Job::m_pMaxCoolingTime, FillCooling},
    {11, "PackingIndex", "--", &Job::m_pPackingIndex, IntermediateTimes},
    {12, "SinkMarkDisplacement_Totoal", "mm", &Job::m_pSinkMarkTotal, IntermediateTimes},
    {13, "SinkMarkDisplacement_u", "mm", &Job::m_pNormalX, IntermediateTimes},
    {14, "SinkMarkDisplacement_v", "mm", &Job::m_pNormalY, IntermediateTimes},
    {15, "SinkMarkDisplacement_w", "mm", &Job::m_pNormalZ, IntermediateTimes},
    {kShrinkageItem, "Max_VolumeShrinkage", "%", &Job::m_pMaxVolumeShrinkage, Flow},
    {17, "Average_Velocity_u", "cm/s", &Job::m_pAverageVelocityU, Flow},
    {18, "Average_Velocity_v", "cm/s", &Job::m_pAverageVelocityV, Flow},
    {19, "Average_Velocity_w", "cm/s", &Job::m_pAverageVelocityW, Flow},
    {20, "Flake_ColorIntensity", "--", &Job::m_pFlakeColorIntensity, Flake},
}};

int SetOutputItemInformation(FrozenLayerJob& job) {
    job.m_nItemCount = kItemCount;
    job.m_nOutputItemCount = 0;
    DescribeItems(job);
    UpdateLimits(job);
    DropZeroShrinkage(job);
    LogLine(job, "SetOutputItermInfor end");
    return 1;
}

}  // namespace qnl::output
