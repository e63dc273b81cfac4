#pragma once

#include "context/FrozenLayerJob.h"
#include "profile/NodeProfileResult.h"
#include "profile/ProfileScratch.h"

/// Evaluates one surface node: `i` is its position in the surface-node list, (x, y, z) its place in mm,
/// (dx, dy, dz) the inward normal of any length. `result` comes in all zero.
///
/// Gives -1 for a direction shorter than 1e-20, else 1; with fewer than two pass elements `result` stays
/// zero. Of the job, only the depth window, the search
/// record `i` and the counters of the calling thread are written. Raises std::bad_alloc.
int CalcuFrozenAtNode(FrozenLayerJob& job, int i, double x, double y, double z, double dx, double dy,
                      double dz, NodeProfileResult& result, qnl::profile::ProfileScratch& scratch);

namespace qnl::profile {

/// True when a node sees another depth window than the nodes before it: where the stage sets the window only
/// after its first use at a node, and what it holds from before differs. Nodes must then be evaluated in the
/// order of the list.
bool WindowChangesOnTheWay(const FrozenLayerJob& job);

}  // namespace qnl::profile
