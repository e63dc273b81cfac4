#pragma once

#include <optional>
#include <vector>

#include "series/DepthProfiles.h"
#include "series/OpenedProject.h"
#include "series/SeriesFiles.h"
#include "series/SurfaceRays.h"
#include "series/WallReadings.h"

namespace qnl::series {

/// What is known of the freezing of a surface node; the numbers stand in exported files.
enum class FreezeStatus : int { Freezes = 0, NoResult = 1, NeverFrozen = 2 };

/// When the wall below each surface node freezes, and how much of the part is frozen.
struct FreezeHistory {
    double freezeTemperature = 0.0;  ///< degC; not a number for a material without one
    std::vector<std::vector<double>>
        hottest;                        ///< by time, by surface node: highest temperature along the whole
                                        ///< ray, degC; not a number outside the part and without a profile
    std::vector<WallValues> layers;     ///< by time, as in WallReadings
    std::vector<float> timeToFreeze;    ///< on the axis of the series; not a number unless it freezes
    std::vector<FreezeStatus> status;   ///< by surface node
    std::vector<double> frozenVolume;   ///< by time, % of the part's volume
    std::vector<double> frozenSurface;  ///< by time, % of the part's surface

    /// False for a material without a freeze temperature: every status is then NoResult, every share 0.
    bool Freezes() const;
};

/// Weights of the part, 1-based, 0 for what belongs to the runner.
struct PartMeasure {
    std::vector<double> cellVolumes;  ///< mm3
    std::vector<double> faceAreas;    ///< mm2
};

PartMeasure MeasurePart(const OpenedProject& project);

/// Reads the temperatures of every output time once. A node freezes at the first time at which the highest
/// temperature along its whole ray, beyond the depth window too, is below the freeze temperature, linear
/// between output times; frozen at the first output time counts as that time. `profiles` gets every output
/// time. Raises InputProblem for a stage file that cannot be used. `known` has nothing, or what
/// HistoryOfWalls gives: the rays are not followed then.
FreezeHistory ReadFreezeHistory(OpenedProject& project, const SeriesFiles& series, const Surface& surface,
                                const SurfaceRays& rays, ProfileSeries& profiles, FreezeHistory known = {});

/// The history of walls, by time, as a run found them; without the shares of the part.
FreezeHistory HistoryOfWalls(const OpenedProject& project, const SeriesFiles& series, const Surface& surface,
                             const std::vector<std::vector<NodeWall>>& walls);

/// The time at which the values first fall below the limit, linear between times; the first time when they
/// begin below it, none when they never are.
std::optional<double> FirstTimeBelow(const std::vector<double>& times, const std::vector<double>& values,
                                     double limit);

}  // namespace qnl::series
