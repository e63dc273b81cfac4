#pragma once

#include <array>
#include <string_view>

namespace qnl::input {

/// A stage of analysis, told by a pattern anywhere in the path of its result file.
struct StagePattern {
    std::string_view pattern;
    std::string_view resultExtension;  ///< extension of the frozen-layer result
    const char* title;
};

/// In the order in which the patterns are tested.
inline constexpr std::array<StagePattern, 5> kStagePatterns{{
    {".k4f", ".fzr", "flow"},
    {".k4p", ".pzr", "pack"},
    {".k4c", ".czr", "cool"},
    {".k4hc", ".hczr", "heating-cooling"},
    {".k4w", ".wzr", "warp"},
}};

inline constexpr std::string_view kFibreExtension = ".k4o";

/// True when a stage pattern, or the extension of fibre results, is found anywhere in the path.
inline bool NamesStageResult(std::string_view path) {
    for (const StagePattern& stage : kStagePatterns) {
        if (path.rfind(stage.pattern) != std::string_view::npos) {
            return true;
        }
    }
    return path.rfind(kFibreExtension) != std::string_view::npos;
}

}  // namespace qnl::input
