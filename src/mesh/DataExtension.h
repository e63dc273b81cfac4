#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::mesh {

/// Carries every slot of m_pNodeData that exists to m_pSurfData: a face takes the mean of its corners,
/// summed in corner order. Gives 1.
int ExtendNodeToSurface(FrozenLayerJob& job);

/// The same for cells, into m_pCellData, and for the velocity, in single precision, into m_pCellVector.
/// Gives 1.
int ExtendNodeToInnerCell(FrozenLayerJob& job);

/// Stores the mean diagonal of the face boxes, mm, in m_dSurAvgMeshSize; not a number without faces.
/// Gives 1.
int AverageSurfaceMeshSize(FrozenLayerJob& job);

}  // namespace qnl::mesh
