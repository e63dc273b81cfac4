#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "results/ResultFile.h"

namespace qnl::project {

/// One output time of a stage: its index (0 is the base time) and, where its stage file tells it, the
/// real time.
struct OutputTime {
    int index = 0;
    std::optional<double> seconds;

    /// "0.25 s", or "index 3" when the real time is not known.
    std::string Text() const;
};

/// What a stage file says of itself, apart from its values.
struct StageSummary {
    std::optional<double> seconds;  ///< real time; none in ASCII and damaged files
    bool hasNodeIds = false;        ///< a binary result with a map of node ids
    bool isBinary = false;          ///< what follows is known
    int nodes = 0;                  ///< node entries: the largest label, or rows with labels
    std::vector<int> items;         ///< their numbers, ascending
};

StageSummary SummaryOf(const results::ResultFileContent& content);

/// Nothing is known of a text or a damaged file.
StageSummary ReadStageSummary(std::string_view stageFile);

}  // namespace qnl::project
