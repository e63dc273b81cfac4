#pragma once

#include <functional>

#include "context/FrozenLayerJob.h"

/// What stands in place of the frozen-layer stage in this test program: called once an output time with
/// the job as the stage would find it; gives the stage's status.
std::function<int(FrozenLayerJob&)>& TheStage();
