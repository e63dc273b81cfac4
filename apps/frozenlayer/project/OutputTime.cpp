#include "project/OutputTime.h"

#include <cmath>

#include "results/ResultFile.h"
#include "text/NumberText.h"

namespace qnl::project {

std::string OutputTime::Text() const {
    return seconds ? text::NumberText(*seconds) + " s" : "index " + std::to_string(index);
}

StageSummary ReadStageSummary(std::string_view stageFile) {
    StageSummary summary;
    try {
        const results::ResultFileContent content = results::ReadResultSummary(stageFile);
        summary.hasNodeIds = content.hasNodeIds;
        if (content.time && content.time->unit == "s" && std::isfinite(content.time->value)) {
            summary.seconds = content.time->value;
        }
    } catch (const results::ResultFileError&) {
        return {};
    }
    return summary;
}

}  // namespace qnl::project
