#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// m_pSinkMarkTotal loses the smooth reference m_pSinkMarkWork, at every node; negative depths become 0.
void SubtractSinkReference(FrozenLayerJob& job);

/// Overwrites the normals by the sink vectors, mm: minus the depth m_pSinkMarkTotal along the unit normal.
void TurnNormalsIntoSinkVectors(FrozenLayerJob& job);

}  // namespace qnl::frozen
