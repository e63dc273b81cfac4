#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::frozen {

/// On the first output time creates the empty search records and reads the saved search into them; a
/// failed read leaves m_bSearchDone 0. Later output times find the records and only report the time.
void PrepareSearchRecords(FrozenLayerJob& job);

}  // namespace qnl::frozen
