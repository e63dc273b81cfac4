#pragma once

#include "base/OneBased.h"

namespace qnl::profile {

/// What the packing index is formed from. The arrays of the elements have the same count.
struct PackingProfile {
    OneBased<const double> depths;        ///< mm, ascending
    OneBased<const double> temperatures;  ///< degC
    OneBased<const double> densities;     ///< g/cm3
};

/// Material and lengths of the packing index.
struct PackingLimits {
    double freezeTemperature;  ///< degC; material hotter than 20 degrees below it counts as melt
    double freezeDensity;      ///< g/cm3
    double t;                  ///< mm; the profile counts to a depth of 5t
    double window;             ///< mm; segments that end less than this below the first element count
};

}  // namespace qnl::profile

/// Mass that the melt in the profile lacks against the frozen density, by the mass of the profile at that
/// density: (f H - R) / (f D) with f the freeze density, H the melt length, R its length times density and
/// D the length of the profile. 0 for fewer than two elements and for D below 1e-8 mm.
double CalcuPackingIndex(const qnl::profile::PackingProfile& profile,
                         const qnl::profile::PackingLimits& limits);

/// As CalcuPackingIndex, ending with the segment that reaches gas; `gasMarkers` by element.
double CalcuPackingIndexToGas(const qnl::profile::PackingProfile& profile,
                              qnl::OneBased<const double> gasMarkers,
                              const qnl::profile::PackingLimits& limits);
