#include "project/OutputTime.h"

#include <cmath>

#include "text/NumberText.h"

namespace qnl::project {

std::string OutputTime::Text() const {
    return seconds ? text::NumberText(*seconds) + " s" : "index " + std::to_string(index);
}

StageSummary SummaryOf(const results::ResultFileContent& content) {
    StageSummary summary;
    summary.hasNodeIds = content.hasNodeIds;
    summary.isBinary = true;
    summary.nodes = content.maxNode;
    for (const results::ResultItem& item : content.items) {
        summary.items.push_back(item.id);
    }
    if (content.time && content.time->unit == "s" && std::isfinite(content.time->value)) {
        summary.seconds = content.time->value;
    }
    return summary;
}

StageSummary ReadStageSummary(std::string_view stageFile) {
    try {
        return SummaryOf(results::ReadResultSummary(stageFile));
    } catch (const results::ResultFileError&) {
        return {};
    }
}

}  // namespace qnl::project
