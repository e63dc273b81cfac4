#pragma once

#include "context/FrozenLayerJob.h"

/// Has the wall thickness file of the mesh made and reads it into m_pNodeThickness, mm. Gives 1, or -1
/// when that file cannot be opened; the array is then as before. A mesh path without "." raises
/// std::out_of_range.
int ReadThickness(FrozenLayerJob& job);
