#pragma once

#include "context/FrozenLayerJob.h"

/// Reads displacement and volume shrinkage of one output time of a warp result into m_pWarpDisplacement and
/// m_pNodeData[kVolumeShrinkage]. Gives 1, or -1 when the file cannot be opened or is a damaged binary
/// result. A file that is no binary result is read in the text layout, and whatever comes of that counts as
/// success.
int ReadWarpResults(FrozenLayerJob& job, const char* path);

/// Reads the volume shrinkage out of the text layout of warp results; it is stored under the number that
/// stands in the record, taken as a node index. Gives 1, or -1 for a file that cannot be opened.
int ReadWarpResultsAscii(FrozenLayerJob& job, const char* path);
