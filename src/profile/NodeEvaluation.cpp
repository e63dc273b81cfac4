#include "profile/NodeEvaluation.h"

#include "base/Vector3.h"
#include "profile/FrozenWall.h"
#include "profile/JobViews.h"
#include "profile/ProfileInputs.h"
#include "profile/ReductionTable.h"
#include "profile/ResolvedFields.h"
#include "profile/rays/RayProfile.h"
#include "profile/search/PassElementSearch.h"

namespace qnl::profile {

namespace {

RayProfile FollowRay(const FrozenLayerJob& job, const RayMedium& medium, const NodeRay& ray,
                     const FoundElements& found, ProfileScratch& scratch) {
    if (job.m_options.Rules().seesInsideCells) {
        return ResolveRay(job, ray, found, scratch);
    }
    scratch.Prepare(found.count);
    return BuildRayProfile(medium, ray.direction, found, scratch.ProfileArrays());
}

}  // namespace

}  // namespace qnl::profile

int CalcuFrozenAtNode(FrozenLayerJob& job, int i, double x, double y, double z, double dx, double dy,
                      double dz, NodeProfileResult& result, qnl::profile::ProfileScratch& scratch) {
    qnl::Vector3 direction{dx, dy, dz};
    if (!qnl::Normalise(direction)) {
        return -1;
    }
    int count = 0;
    const int slot = qnl::profile::SearchSlot(job);
    const int* found = FindNodePassElems(job, i, count, x, y, z, direction.x, direction.y, direction.z, slot);
    if (count < 2) {
        return 1;
    }
    const qnl::profile::ProfileInputs inputs = qnl::profile::InputsOf(job);
    const qnl::profile::RayProfile profile =
        qnl::profile::FollowRay(job, inputs.medium, {{x, y, z}, direction, slot}, {found, count}, scratch);
    if (profile.elements.Count() < 2) {
        return 1;
    }
    const bool resolved = job.m_options.Rules().seesInsideCells;
    qnl::profile::ReduceProfile({inputs, profile, scratch, resolved ? &scratch.resolved : nullptr, result},
                                job.m_dKernelScratch);
    if (resolved) {
        result.layers = qnl::profile::FrozenWall(job, scratch.resolved);
    }
    result.hasProfile = true;
    return 1;
}

namespace qnl::profile {

bool WindowChangesOnTheWay(const FrozenLayerJob& job) {
    return ReadsWindowBeforeSetting(TraitsOf(job)) && job.m_dKernelScratch != DepthWindowOf(job);
}

}  // namespace qnl::profile
