#pragma once

#include <vector>

#include "context/FrozenLayerJob.h"

namespace qnl::output {

/// Writes the result file of the present output time at m_szResultFile. What goes wrong in writing is
/// recorded by the result library and does not stop the run. Gives 1.
int WriteBinaryResult(FrozenLayerJob& job);

/// The nodes written, ascending: those with a centre temperature above 1 degree, or, in
/// corrected mode, the part nodes whose evaluation had a profile.
std::vector<NodeId> SelectOutputNodes(const FrozenLayerJob& job);

}  // namespace qnl::output
