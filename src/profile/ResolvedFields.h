#pragma once

#include "base/Vector3.h"
#include "context/FrozenLayerJob.h"
#include "profile/ProfileScratch.h"
#include "profile/rays/RayProfile.h"

namespace qnl::profile {

/// Recovers the gradients of those fields of the present output time by node that the stage's quantities are
/// formed from. Raises std::runtime_error when the mesh kernel recovers none.
void RecoverFields(FrozenLayerJob& job);

/// The fields that the quantities of the stage are formed from; temperature, volume shrinkage and density
/// with their gradients. Views of the job's arrays, to be made after RecoverFields, once for all threads: it
/// passes through all nodes and cells.
ProfileInput FieldsOf(const FrozenLayerJob& job);

/// A ray from the node at `place` along the unit vector `direction`, on the search slot of the thread.
struct NodeRay {
    Vector3 place;
    Vector3 direction;
    int slot;
};

/// The profile of the field itself: its samples stand for pass elements and for merged samples alike. Fewer
/// than two samples are no profile. The views lie in the scratch, whose resolved profile has taken
/// FieldsOf(job).
RayProfile ResolveRay(const FrozenLayerJob& job, const NodeRay& ray, const FoundElements& found,
                      ProfileScratch& scratch);

}  // namespace qnl::profile
