#pragma once

#include "base/OneBased.h"
#include "context/WallLayers.h"

/// Readings of a profile over samples of strictly ascending depth, mm, linear between them. The arrays of one
/// call have the same count, at least 1.
namespace qnl::profile {

/// The layers of the wall from the first to the last sample. A temperature at the freeze temperature is not
/// frozen. In a wall that is frozen through both layers are as thick as the wall.
WallLayers ReadWallLayers(OneBased<const double> depths, OneBased<const double> temperatures,
                          double freezeTemperature);

/// Largest value of the samples.
double HighestValue(OneBased<const double> values);

/// Mean of the values in the depth window (less than `window` mm below the first sample) whose magnitude is
/// above 1e-8, each weighted by the distance between its neighbours (the distance to its one neighbour at the
/// ends); 0 when there is none.
double MeanNonZeroByLength(OneBased<const double> depths, OneBased<const double> values, double window);

}  // namespace qnl::profile
