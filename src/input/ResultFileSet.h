#pragma once

#include "context/FrozenLayerJob.h"

/// Tells the stage from the name of the input result file, sets the presence flags, and puts the name of
/// the program's own result into m_szResultFile. Gives 1. Raises std::out_of_range for an input name
/// without ".", or, where the log is looked for, a log path without "\", and std::length_error for a name
/// that does not fit its buffer.
int SelectResultFiles(FrozenLayerJob& job);

/// Whether the earlier stage's log of intermediate output times, beside m_szLogFile, is complete: 1 when
/// it holds "[EOF]", 0 when not, 3302 when it cannot be opened. Raises as above; the log's own path is
/// limited to 254 bytes.
int CheckIntermediateOutputLog(FrozenLayerJob& job);
