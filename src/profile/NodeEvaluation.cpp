#include "profile/NodeEvaluation.h"

#include "base/Vector3.h"
#include "profile/JobViews.h"
#include "profile/ProfileInputs.h"
#include "profile/ReductionTable.h"
#include "profile/rays/RayProfile.h"
#include "profile/search/PassElementSearch.h"

int CalcuFrozenAtNode(FrozenLayerJob& job, int i, double x, double y, double z, double dx, double dy,
                      double dz, NodeProfileResult& result, qnl::profile::ProfileScratch& scratch) {
    qnl::Vector3 direction{dx, dy, dz};
    if (!qnl::Normalise(direction)) {
        return -1;
    }
    int count = 0;
    const int* found = FindNodePassElems(job, i, count, x, y, z, direction.x, direction.y, direction.z,
                                         qnl::profile::SearchSlot(job));
    if (count < 2) {
        return 1;
    }
    scratch.Prepare(count);
    const qnl::profile::ProfileInputs inputs = qnl::profile::InputsOf(job);
    const qnl::profile::RayProfile profile =
        qnl::profile::BuildRayProfile(inputs.medium, direction, {found, count}, scratch.ProfileArrays());
    qnl::profile::ReduceProfile(profile, inputs, job.m_dKernelScratch, scratch, result);
    result.hasProfile = true;
    return 1;
}

namespace qnl::profile {

bool WindowChangesOnTheWay(const FrozenLayerJob& job) {
    return ReadsWindowBeforeSetting(TraitsOf(job)) && job.m_dKernelScratch != DepthWindowOf(job);
}

}  // namespace qnl::profile
