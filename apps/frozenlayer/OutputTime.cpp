#include "OutputTime.h"

#include <cmath>

#include "NumberText.h"
#include "results/result_file.h"

namespace qnl {

std::string OutputTime::Text() const {
    return seconds ? NumberText(*seconds) + " s" : "index " + std::to_string(index);
}

StageSummary ReadStageSummary(std::string_view stageFile) {
    StageSummary summary;
    try {
        const ResultFileContent content = ReadResultSummary(stageFile);
        summary.hasNodeIds = content.hasNodeIds;
        if (content.time && content.time->unit == "s" && std::isfinite(content.time->value)) {
            summary.seconds = content.time->value;
        }
    } catch (const ResultFileError&) {
        return {};
    }
    return summary;
}

}  // namespace qnl
