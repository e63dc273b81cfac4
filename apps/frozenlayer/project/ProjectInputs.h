#pragma once

#include <string>

#include "project/ProjectPaths.h"

namespace qnl::project {

/// The files that the run file of a project names, Windows-style; empty where it names none.
struct ProjectInputs {
    std::string runFile;
    std::string meshFile;
    std::string materialFile;
};

/// Reads the run file of a stage file's project; `runFile` is set and the rest empty when there is none.
ProjectInputs ReadProjectInputs(const StageFile& base);

/// The base stage file that a user's word stands for: a stage file itself, or a project folder, whose
/// latest run is taken with the first stage in the order flow, pack, cool, heating-cooling, warp (fibre
/// results only when `fibreProbe`, and then only those). Raises InputProblem.
StageFile ChooseStageFile(const std::string& word, bool fibreProbe);

/// Checks that the run file of a stage file's project, and the mesh and the material that it names, are
/// there, and that the paths fit. Raises InputProblem for the first thing that is wrong.
void CheckProjectFiles(const StageFile& base);

/// A warning when the path of a base file holds the extensions of several stages, which the evaluation then
/// takes for all of them; else empty.
std::string StagesNote(const StageFile& base);

/// Checks that everything that a run with intermediate times 1 to `intermediateTimes` reads is there, and
/// that no folder stands where it writes a result. Raises InputProblem for the first thing that is wrong.
void CheckInputs(const StageFile& base, int intermediateTimes, bool fibreProbe);

}  // namespace qnl::project
