#pragma once

#include <array>

#include "base/OneBased.h"
#include "context/FrozenLayerJob.h"
#include "context/RunConditions.h"
#include "profile/kernels/FlakeKernels.h"
#include "profile/rays/RayProfile.h"

namespace qnl::profile {

/// Velocity by cell, components u, v, w, cm/s; an empty one counts as 0.
using VelocityField = std::array<OneBased<const float, CellId>, 3>;

/// What the quantities of a profile are formed from.
struct ProfileInputs {
    RunTraits run;
    RayMedium medium;
    PassElementField shrinkage;    ///< volume, percent
    PassElementField gasMarker;    ///< below -0.1 polymer, above 0.1 gas
    PassElementField speed;        ///< cm/s
    PassElementField coolingTime;  ///< s
    PassElementField density;      ///< g/cm3
    VelocityField velocity;
    TensorField fiber;
    double freezeTemperature;   ///< degC
    double freezeDensity;       ///< g/cm3
    double t;                   ///< geometric tolerance of the mesh, mm
    double maxShrinkage;        ///< largest volume shrinkage of the run, percent
    bool showsFlakesAsAverage;  ///< the average temperature shows the flake intensity
};

/// Views of the job's fields; they hold as long as its arrays.
ProfileInputs InputsOf(const FrozenLayerJob& job);

}  // namespace qnl::profile
