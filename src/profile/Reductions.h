#pragma once

#include "base/OneBased.h"
#include "profile/NodeProfileResult.h"
#include "profile/ProfileInputs.h"
#include "profile/ProfileScratch.h"
#include "profile/rays/RayProfile.h"
#include "profile/resolved/ResolvedProfile.h"

namespace qnl::profile {

/// The profile of one node on its way to numbers. The views lie in the scratch of the thread.
struct Reduced {
    const ProfileInputs& inputs;
    const RayProfile& profile;
    ProfileScratch& scratch;
    const ResolvedProfile* resolved;  ///< null where the values are those of faces and cells
    NodeProfileResult& result;
    double window = 0.0;  ///< mm, as the quantity finds it

    // Values by element.
    OneBased<const double> shrinkage{};
    OneBased<const double> densities{};   ///< empty in runs without intermediate times
    OneBased<const double> gasMarkers{};  ///< empty in runs without gas
};

/// Values of a field at the elements or the samples of the profile: those of the resolved profile, whose
/// samples are both, or those of faces and cells, gathered into a row of the scratch.
OneBased<const double> AtElements(const Reduced& node, ProfileField field, const PassElementField& cells,
                                  ProfileScratch::Row row);
OneBased<const double> AtSamples(const Reduced& node, ProfileField field, const PassElementField& cells,
                                 ProfileScratch::Row row);

/// Each forms one quantity, or a few that belong together, and stores it in the result.

void ReduceToFrozenRatio(Reduced& node);
void ReduceToFrozenRatioInPolymer(Reduced& node);
void ReduceToTemperatures(Reduced& node);
void ReduceToBulkTemperature(Reduced& node);
void ReduceToWallDifference(Reduced& node);
void ReduceToSkin(Reduced& node);
void ReduceToMaxCoolingTime(Reduced& node);
/// In warp runs, where it stands in the place of the frozen ratio.
void ReduceToWarpIndicator(Reduced& node);
void ReduceToShrinkLocation(Reduced& node);
void ReduceToPackingIndex(Reduced& node);
void ReduceToPackingIndexToGas(Reduced& node);
void ReduceToSinkDepth(Reduced& node);
void ReduceToFlow(Reduced& node);
/// Leaves the result alone without a tensor field.
void ReduceToFlakeIntensity(Reduced& node);

}  // namespace qnl::profile
