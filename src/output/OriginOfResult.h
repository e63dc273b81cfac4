#pragma once

#include <string>

#include "context/FrozenLayerJob.h"
#include "platform/ResultOrigin.h"

namespace qnl::output {

/// What the result of the present output time is made from: every file whose content or absence decides its
/// values. The search file is none of them, as it only keeps what the mesh says.
ResultOrigin OriginOfResult(FrozenLayerJob& job);

}  // namespace qnl::output
