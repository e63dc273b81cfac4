#pragma once

#include "base/Vector3.h"
#include "context/FrozenLayerJob.h"
#include "profile/ProfileScratch.h"
#include "profile/rays/RayProfile.h"

namespace qnl::profile {

/// Fields of a profile: all that the quantities of the stage are formed from, or the temperature alone.
enum class FieldsWanted { OfTheStage, Temperature };

/// Recovers the gradients of the temperature of the present output time by node. Raises std::runtime_error
/// when the mesh kernel recovers none.
void RecoverTemperature(FrozenLayerJob& job);

/// The fields: the temperature with its gradients, the others linear between nodes. Views of the job's
/// arrays, to be made after RecoverTemperature, once for all threads: it passes through all nodes and cells.
ProfileInput FieldsOf(const FrozenLayerJob& job, FieldsWanted wanted = FieldsWanted::OfTheStage);

/// A ray from the node at `place` along the unit vector `direction`, on the search slot of the thread.
struct NodeRay {
    Vector3 place;
    Vector3 direction;
    int slot;
};

/// The profile of the field itself: its samples stand for pass elements and for merged samples alike. Fewer
/// than two samples are no profile. The views lie in the scratch, whose resolved profile has taken
/// FieldsOf the job.
RayProfile ResolveRay(const FrozenLayerJob& job, const NodeRay& ray, const FoundElements& found,
                      ProfileScratch& scratch);

}  // namespace qnl::profile
