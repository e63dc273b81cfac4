#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// Flow runs: among listed nodes closer than the thinning distance, whose normals do not point against
/// each other, only the first in list order keeps its average velocity; the others get 0. Nodes kept are
/// stored in m_pSurfTree, which lives on to the next output time.
void ThinOutVelocities(FrozenLayerJob& job);

/// Half width of the neighbourhood, mm: three mean face sizes, at most 3 % of the longest box side.
double ThinningDistance(double meanFaceSize, double longestSide);

}  // namespace qnl::frozen
