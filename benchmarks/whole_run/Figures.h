#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What is measured of a run, in the order in which it happens.
enum class Phase {
    MeshFile,
    Topology,
    MeshKernel,
    StageInput,
    Normals,
    Search,
    Evaluation,
    Thinning,
    Smoothing,
    SinkVectors,
    ResultFile,
    SearchFile,
};

/// Titles by phase. Those of one output time are means over the times of the run.
inline constexpr std::array<const char*, 12> kPhaseTitles{
    "mesh file read",
    "topology",
    "mesh read, whole (file, topology, records, ray search made)",
    "stage results read, carried to faces and cells; a time",
    "normals, smoothed; surface nodes chosen; a time",
    "search",
    "evaluation; a time",
    "velocities thinned out; a time",
    "smoothing of results; a time",
    "sink vectors; a time",
    "result file written; a time",
    "search file written",
};
inline constexpr std::size_t kPhases = kPhaseTitles.size();

/// `peakBytes` is the most memory that the whole process held during the phase; 0 where the system does
/// not tell.
struct PhaseFigures {
    double seconds = 0.0;
    std::int64_t peakBytes = 0;
};

/// One run. Trivially copyable, as it goes through a pipe.
struct RunFigures {
    std::int64_t cells = 0;
    std::int64_t rays = 0;
    std::int64_t passedCells = 0;
    std::array<PhaseFigures, kPhases> phases{};

    PhaseFigures& Of(Phase phase) { return phases[static_cast<std::size_t>(phase)]; }
};
