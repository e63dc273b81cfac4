#include "job/CarriedState.h"

#include <algorithm>
#include <cstddef>

#include "mesh/FieldStorage.h"

namespace qnl::job {

void DropCarriedState(FrozenLayerJob& job) {
    constexpr double kNoMaximumYet = -1e8;

    job.m_pSurfTree.reset();
    job.m_pOutputItems.reset();
    job.m_pNodeThickness.reset();
    for (auto& displacement : job.m_pWarpDisplacement) {
        displacement.reset();
    }
    job.m_nWarpEntries = 0;
    if (job.m_pSurfNodeFlag) {
        std::fill_n(job.m_pSurfNodeFlag.get(), static_cast<std::size_t>(job.m_nNodes) + 1, 0);
    }
    job.m_dMaxValue = kNoMaximumYet;
    job.m_bIsGasIn = 0;
    job.m_bGasInCool = 0;
    job.m_bFillHasCoolingTime = 0;
    job.m_dKernelScratch = 3.0 * job.m_dGeomTolerance;
    job.m_nAsciiItemCount = 1;
    job.m_szTimeSteps[0] = '\0';
    mesh::PrepareDataStorage(job);
}

}  // namespace qnl::job
