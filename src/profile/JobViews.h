#pragma once

#include "base/OneBased.h"
#include "context/FieldSlots.h"
#include "context/FrozenLayerJob.h"
#include "profile/kernels/DepthWindow.h"
#include "profile/rays/RayProfile.h"

namespace qnl::profile {

/// Views of what the job holds, as the profiles along rays need it. They hold as long as the job's arrays.

inline PassElementMesh MeshOf(const FrozenLayerJob& job) {
    return {{job.p_Surfce, job.m_nSurfaces}, {job.p_Cell, job.m_nCells}};
}

inline PassElementField FieldOf(const FrozenLayerJob& job, FieldSlot field) {
    return {{job.m_pSurfData[field].get(), job.m_nSurfaces}, {job.m_pCellData[field].get(), job.m_nCells}};
}

inline RayMedium MediumOf(const FrozenLayerJob& job) {
    return {MeshOf(job),
            FieldOf(job, kTemperature),
            {CoincidenceLimit(job.m_dBoxMax[2], job.m_dBoxMin[2]), job.m_dGeomTolerance},
            job.m_pOptKer.get()};
}

/// The depth window of the job's mesh, mm, whether it is set yet or not.
inline double DepthWindowOf(const FrozenLayerJob& job) {
    return DepthWindow(job.m_dGeomTolerance);
}

inline FoundElements FoundOf(const CSurfNodeSearch& record) {
    return {record.m_pPassElems.get(), record.m_nPassElems};
}

}  // namespace qnl::profile
