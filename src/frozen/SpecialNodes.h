#pragma once

#include "job/FrozenLayerJob.h"

/// Sets the sink, packing, shrinkage and flake values of the listed nodes of class -1 to 0.
void ClearSpecialNodes(FrozenLayerJob& job);
