#pragma once

#include <string_view>

#include "context/FrozenLayerJob.h"

namespace qnl::job {

/// Turns the launcher's words into the paths of the job, reads the run file and creates the log tool and
/// the timer. Gives 1, or the run-file reader's code (log tool and timer are then missing).
int HandleCommandLine(FrozenLayerJob& job, int argc, char** argv);

/// Takes mesh and material file names from the run file. Gives 1, or 3302 when it cannot be opened.
int ReadRunFile(FrozenLayerJob& job, std::string_view projectDirectory);

/// Sets m_szSurFile from m_szMeshFile. Gives 1.
int BuildSearchResultPath(FrozenLayerJob& job);

}  // namespace qnl::job
