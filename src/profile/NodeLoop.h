#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::profile {

/// Evaluates every node of the surface-node list along its inward normal, on m_nThreads threads, and
/// stores the results by node: zeros where a node could not be evaluated. Sets m_pHasProfile of the
/// listed nodes (created, zeroed, when null). Results do not depend on the thread count.
///
/// The observer is told of the progress. An exception on any thread ends the loop early and is raised
/// again on the calling thread; the results are incomplete then. Nodes with a volume shrinkage above
/// 100 % are recorded as one fault.
void EvaluateSurfaceNodes(FrozenLayerJob& job);

}  // namespace qnl::profile
