#pragma once

#include "context/FrozenLayerJob.h"

/// Reads one output time of a flow or pack result into m_pNodeData and m_pNodeVector. Gives 1, or -1 when
/// the file cannot be opened or is a damaged binary result. A file that is no binary result is read in the
/// text layout, and whatever comes of that counts as success.
int ReadFlowResults(FrozenLayerJob& job, const char* path);

/// Reads the text layout of flow results. Gives 1, or -1 for a file that cannot be opened and for a
/// record that breaks off; values before that record stay.
int ReadFlowResultsAscii(FrozenLayerJob& job, const char* path);
