#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace qnl {

/// How a run evaluates. The number stands in the result file, as /head attribute `flag`.
enum class Mode : int { Classic = 0, Corrected = 1, Resolved = 2 };

/// What the modes differ in; all else is the same for all of them.
struct ModeRules {
    const char* name;
    bool carriesState;     ///< from one output time to the next, as the suite's solver does
    bool smoothsNormals;   ///< in runs with intermediate times
    bool smoothsResults;   ///< over the surface; the reference of the sink marks always is
    bool seesInsideCells;  ///< the profile is that of the field along the ray, not of averages of faces and
                           ///< cells
};

inline constexpr std::array<ModeRules, 3> kModeRules{{
    {"classic", true, true, true, false},
    {"corrected", false, true, true, false},
    {"resolved", false, false, false, true},
}};

/// The mode of the number in a result file; none for a number that is no mode's.
constexpr std::optional<Mode> ModeOfFlag(int flag) {
    const bool known = flag >= 0 && flag < static_cast<int>(kModeRules.size());
    return known ? std::optional(static_cast<Mode>(flag)) : std::nullopt;
}

constexpr const ModeRules& RulesOf(Mode mode) {
    return kModeRules[static_cast<std::size_t>(mode)];
}

}  // namespace qnl
