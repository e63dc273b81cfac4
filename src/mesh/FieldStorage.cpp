#include "mesh/FieldStorage.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "context/Messages.h"
#include "context/OutputQuantities.h"

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

}  // namespace

void PrepareDataStorage(FrozenLayerJob& job) {
    const bool flow = HasFlow(job);
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
    PrepareDataStorage(job);
    LogLine(job, "New Data StorageMemory end");
    return 1;
}

int NewFrozenStorage(FrozenLayerJob& job) {
    const RunTraits run = TraitsOf(job);
    for (const std::size_t row : kMakingOrder) {
        const OutputQuantity& quantity = kOutputQuantities[row];
        if (quantity.computed(run)) {
            CreateZeroed(job.*quantity.array, job.m_nNodes);
        }
    }
    CreateZeroed(job.m_pSurfNodeFlag, job.m_nNodes);
    LogLine(job, "NewFrozenCalcuMemory end");
    return 1;
}

void EnsureComputedArrays(FrozenLayerJob& job) {
    const RunTraits run = TraitsOf(job);
    for (const std::size_t row : kMakingOrder) {
        const OutputQuantity& quantity = kOutputQuantities[row];
        if (quantity.computed(run)) {
            CreateIfMissing(job.*quantity.array, job.m_nNodes);
        }
    }
    CreateIfMissing(job.m_pSurfNodeFlag, job.m_nNodes);
}

int FreeMemory(FrozenLayerJob& job) {
    for (const std::size_t row : kReleaseOrder) {
        (job.*kOutputQuantities[row].array).reset();
    }
    job.m_pSurfNodeFlag.reset();
    job.m_pOutputItems.reset();
    job.m_pSurfNodeList.reset();
    LogLine(job, "free memory end");
    return 1;
}

}  // namespace qnl::mesh
