#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Builds m_pSurfNodeList: the corner nodes of the boundary faces, each at its first appearance in face
/// and corner order. Part nodes always; the others only when m_nStage is not 1. The marks of an earlier
/// output time stand during the counting pass, whose count sizes the list only when there is none yet.
void SelectSurfaceNodes(FrozenLayerJob& job);

}  // namespace qnl::frozen
