#pragma once

#include "context/FrozenLayerJob.h"

namespace qnl::output {

/// Writes the sink vectors (mm, three arrays by node) beside the log file as "<name>_Sink.k4w", in the
/// ASCII layout of warpage results: one row per label, every other variable zero. Gives 1, or -1 after a
/// message when the file cannot be opened.
int WriteSinkFile(const FrozenLayerJob& job, const double* u, const double* v, const double* w);

}  // namespace qnl::output
