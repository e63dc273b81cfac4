#pragma once

#include "context/FrozenLayerJob.h"

/// Reads the fibre-orientation tensor of every cell into m_pCellFiber. Gives 1, or -1 when the file cannot
/// be opened or is no binary result; the arrays are then as before. Arrays that do not exist stay so.
int ReadFiberResults(FrozenLayerJob& job, const char* path);
