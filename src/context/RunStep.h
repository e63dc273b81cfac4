#pragma once

#include <array>
#include <cstddef>

namespace qnl {

/// The named steps of a run, in the order in which they happen. Those from StageData to SearchFile belong to
/// OutputTimes, and those from Normals to ResultFile to FrozenLayer; they come again at every output time.
enum class RunStep {
    CommandLine,
    InputDigests,
    ResultFiles,
    Material,
    Mesh,
    Threads,
    MeshData,
    Storage,
    OutputTimes,
    FreshStart,
    StageData,
    Extension,
    Thickness,
    FrozenLayer,
    Normals,
    Selection,
    SearchRecords,
    FibreProbe,
    Evaluation,
    SpecialNodes,
    Thinning,
    Smoothing,
    SinkMarks,
    ResultFile,
    SearchFile,
    Release,
    Report,
};

/// What each step does, by step.
inline constexpr std::array kRunStepNames{
    "reading the launcher's words and the run file",
    "noting what the inputs hold",
    "choosing the result files",
    "reading the material",
    "reading the mesh",
    "setting up the threads",
    "taking the mesh over",
    "making the field storage",
    "evaluating the output times",
    "forgetting the earlier output time",
    "reading the stage results",
    "carrying node values to faces and cells",
    "reading the wall thickness",
    "evaluating the frozen layer",
    "finding the surface normals",
    "selecting the surface nodes",
    "preparing the search records",
    "probing the fibre orientation",
    "evaluating the surface nodes",
    "clearing the special nodes",
    "thinning out the velocities",
    "smoothing the results",
    "deriving the sink marks",
    "writing the result file",
    "writing the search file",
    "releasing the storage",
    "printing the report",
};
static_assert(kRunStepNames.size() == static_cast<std::size_t>(RunStep::Report) + 1);

constexpr const char* NameOf(RunStep step) {
    return kRunStepNames[static_cast<std::size_t>(step)];
}

}  // namespace qnl
