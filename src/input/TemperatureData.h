#pragma once

#include "context/FrozenLayerJob.h"

/// Loads the earlier stage's results of one output time into the node and fibre arrays, by the stage
/// flags. `path` names the stage's result file of that time. Gives 1, or -1 when a reader failed. Raises
/// std::out_of_range for a path without "." when fibre results are wanted, and std::length_error when the
/// probe's output path does not fit.
int LoadTemperatureData(FrozenLayerJob& job, const char* path);
