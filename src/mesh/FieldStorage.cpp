#include "mesh/FieldStorage.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "context/Messages.h"

namespace qnl::mesh {

namespace {

constexpr int kTreeKind = 1;
constexpr int kTreeBlockSize = 10000;
constexpr int kTreeBlocks = 200000;
constexpr double kTreeMargin = 10.0;  // in mesh sizes, on every side of the box

// A negative count is a size that no allocation can meet.
std::size_t Entries(int count) {
    if (count < 0) {
        throw std::bad_array_new_length();
    }
    return static_cast<std::size_t>(count) + 1;
}

template <typename T>
void CreateIfMissing(OwnedArray<T>& array, int count) {
    if (!array) {
        array = std::make_unique<T[]>(Entries(count));
    }
}

template <typename T>
void CreateZeroed(OwnedArray<T>& array, int count) {
    if (array) {
        std::fill_n(array.get(), Entries(count), T{});
    } else {
        CreateIfMissing(array, count);
    }
}

template <typename T, std::size_t Slots>
void CreateZeroed(OwnedArray<T> (&arrays)[Slots], int count) {
    for (OwnedArray<T>& array : arrays) {
        CreateZeroed(array, count);
    }
}

void CreateVelocityTree(FrozenLayerJob& job) {
    if (job.m_pSurfTree) {
        return;
    }
    job.m_pSurfTree = std::make_unique<CQNLOptKer>();
    const double margin = kTreeMargin * job.m_dMeshSize;
    const double* hi = job.m_dBoxMax;
    const double* lo = job.m_dBoxMin;
    job.m_pSurfTree->SetADTreeRange(hi[0] + margin, hi[1] + margin, hi[2] + margin, lo[0] - margin,
                                    lo[1] - margin, lo[2] - margin, kTreeKind, kTreeBlockSize, kTreeBlocks);
}

using Condition = bool (*)(const FrozenLayerJob&);

bool Always(const FrozenLayerJob& /*job*/) {
    return true;
}
bool Cool(const FrozenLayerJob& job) {
    return job.m_bHasCool == 1;
}
bool NotCool(const FrozenLayerJob& job) {
    return job.m_bHasCool != 1;
}
bool CoolingTime(const FrozenLayerJob& job) {
    return Cool(job) || job.m_bFillHasCoolingTime == 1;
}
bool GasSkin(const FrozenLayerJob& job) {
    return NotCool(job) && job.m_bIsGasIn == 1;
}
bool Flake(const FrozenLayerJob& job) {
    return NotCool(job) && job.m_bIsFlakeLightIntensity == 1;
}
bool IntermediateTimes(const FrozenLayerJob& job) {
    return job.m_bHasIntermediateTimes == 1;
}
bool Flow(const FrozenLayerJob& job) {
    return job.m_bHasFlow == 1;
}

struct ComputedArray {
    OwnedArray<double> FrozenLayerJob::*array;
    Condition exists;
};

constexpr ComputedArray kComputedArrays[] = {
    {&FrozenLayerJob::m_pFrozenRatio, Always},
    {&FrozenLayerJob::m_pMaxTemperature, Always},
    {&FrozenLayerJob::m_pCenterTemperature, Always},
    {&FrozenLayerJob::m_pAverageTemperature, Always},
    {&FrozenLayerJob::m_pMoldTemperatureDiff, Cool},
    {&FrozenLayerJob::m_pMaxCoolingTime, CoolingTime},
    {&FrozenLayerJob::m_pBulkTemperature, NotCool},
    {&FrozenLayerJob::m_pSkinRatio, GasSkin},
    {&FrozenLayerJob::m_pSkinThickness, GasSkin},
    {&FrozenLayerJob::m_pFlakeColorIntensity, Flake},
    {&FrozenLayerJob::m_pSinkMarkWork, IntermediateTimes},
    {&FrozenLayerJob::m_pSinkMarkTotal, IntermediateTimes},
    {&FrozenLayerJob::m_pPackingIndex, IntermediateTimes},
    {&FrozenLayerJob::m_pMaxVolumeShrinkage, Flow},
    {&FrozenLayerJob::m_pAverageVelocityU, Flow},
    {&FrozenLayerJob::m_pAverageVelocityV, Flow},
    {&FrozenLayerJob::m_pAverageVelocityW, Flow},
};

// In the order of release. The flow group lives until the job ends.
constexpr OwnedArray<double> FrozenLayerJob::*kReleasedArrays[] = {
    &FrozenLayerJob::m_pFrozenRatio,         &FrozenLayerJob::m_pMaxTemperature,
    &FrozenLayerJob::m_pCenterTemperature,   &FrozenLayerJob::m_pAverageTemperature,
    &FrozenLayerJob::m_pBulkTemperature,     &FrozenLayerJob::m_pSkinRatio,
    &FrozenLayerJob::m_pMoldTemperatureDiff, &FrozenLayerJob::m_pSinkMarkWork,
    &FrozenLayerJob::m_pSinkMarkTotal,       &FrozenLayerJob::m_pPackingIndex,
    &FrozenLayerJob::m_pMaxCoolingTime,      &FrozenLayerJob::m_pFlakeColorIntensity,
    &FrozenLayerJob::m_pSkinThickness,
};

}  // namespace

void ResetDataStorage(FrozenLayerJob& job) {
    const bool flow = Flow(job);
    CreateZeroed(job.m_pNodeData, job.m_nNodes);
    if (flow) {
        CreateVelocityTree(job);
        CreateZeroed(job.m_pNodeVector, job.m_nNodes);
    }
    CreateZeroed(job.m_pSurfData, job.m_nSurfaces);
    CreateZeroed(job.m_pCellData, job.m_nCells);
    if (flow) {
        CreateZeroed(job.m_pCellVector, job.m_nCells);
    }
    if (job.m_bKernelFlag == 1 || job.m_bIsFlakeLightIntensity == 1) {
        CreateZeroed(job.m_pCellFiber, job.m_nCells);
    }
}

int NewDataStorage(FrozenLayerJob& job) {
    ResetDataStorage(job);
    LogLine(job, "New Data StorageMemory end");
    return 1;
}

int NewFrozenStorage(FrozenLayerJob& job) {
    for (const ComputedArray& computed : kComputedArrays) {
        if (computed.exists(job)) {
            CreateZeroed(job.*computed.array, job.m_nNodes);
        }
    }
    CreateZeroed(job.m_pSurfNodeFlag, job.m_nNodes);
    LogLine(job, "NewFrozenCalcuMemory end");
    return 1;
}

void EnsureComputedArrays(FrozenLayerJob& job) {
    for (const ComputedArray& computed : kComputedArrays) {
        if (computed.exists(job)) {
            CreateIfMissing(job.*computed.array, job.m_nNodes);
        }
    }
    CreateIfMissing(job.m_pSurfNodeFlag, job.m_nNodes);
}

int FreeMemory(FrozenLayerJob& job) {
    for (OwnedArray<double> FrozenLayerJob::*array : kReleasedArrays) {
        (job.*array).reset();
    }
    job.m_pSurfNodeFlag.reset();
    job.m_pOutputItems.reset();
    job.m_pSurfNodeList.reset();
    LogLine(job, "free memory end");
    return 1;
}

}  // namespace qnl::mesh
