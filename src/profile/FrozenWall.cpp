#include "profile/FrozenWall.h"

#include <limits>

#include "profile/resolved/ProfileReadings.h"

namespace qnl::profile {

WallLayers FrozenWall(const FrozenLayerJob& job, const ResolvedProfile& profile) {
    WallLayers layers =
        ReadWallLayers(profile.Depths(), profile.Values(ProfileField::Temperature), job.m_dFreezeTemp);
    if (job.m_bIsThermoset != 0) {
        constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();
        layers = {kUnknown, kUnknown, kUnknown, layers.wall, 0.0};
    }
    layers.hottest = HighestValue(profile.Values(ProfileField::Temperature));
    return layers;
}

}  // namespace qnl::profile
