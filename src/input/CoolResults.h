#pragma once

#include "context/FrozenLayerJob.h"

/// Reads temperature, cooling time and gas value of one output time of a cool or heating-cooling result
/// into m_pNodeData. Gives 1, or -1 when the file cannot be opened or is a damaged binary result. A file
/// that is no binary result is read in the text layout, and whatever comes of that counts as success.
int ReadCoolResults(FrozenLayerJob& job, const char* path);

/// Reads the text layout of cool results. Gives 1, or -1 for a file that cannot be opened and for a record
/// that breaks off; values before that record stay.
int ReadCoolResultsAscii(FrozenLayerJob& job, const char* path);
