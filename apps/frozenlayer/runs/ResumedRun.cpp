#include "runs/ResumedRun.h"

#include <algorithm>

#include "platform/Stages.h"
#include "text/NumberText.h"

namespace qnl::runs {

namespace {

bool WritesSinkFile(const project::StageFile& base, int logLevel) {
    const Stage* stage = FindStage(base.extension);
    return logLevel > 0 && stage != nullptr && stage->kind == StageKind::Flow;
}

}  // namespace

std::vector<int> FreshTimes(const project::StageFile& base, int intermediateTimes,
                            const project::RunTerms& terms) {
    project::SeriesState state(base);
    std::vector<int> fresh;
    for (int index = 0; index <= intermediateTimes; ++index) {
        if (state.Of(index, terms).freshness == project::Freshness::Fresh) {
            fresh.push_back(index);
        }
    }
    return fresh;
}

std::vector<int> KeptTimes(const project::StageFile& base, int intermediateTimes,
                           const project::RunTerms& terms, int logLevel) {
    std::vector<int> kept = FreshTimes(base, intermediateTimes, terms);
    if (WritesSinkFile(base, logLevel)) {
        kept.erase(std::remove(kept.begin(), kept.end(), intermediateTimes), kept.end());
    }
    return kept;
}

void RefuseResuming(Mode mode) {
    if (RulesOf(mode).carriesState) {
        throw project::InputProblem(
            "--resume does not go with --classic: in the classic mode every output time takes values over "
            "from "
            "those evaluated before it, so that one made alone differs; run all of them, or use --corrected");
    }
}

std::string ResumeHint(std::size_t fresh, int intermediateTimes) {
    const std::size_t all = static_cast<std::size_t>(intermediateTimes) + 1;
    return fresh == 0 || fresh == all
               ? ""
               : std::to_string(fresh) + " of " + text::CountText(static_cast<long long>(all), "result") +
                     " stand here already and are fresh: with --resume only the others are evaluated";
}

}  // namespace qnl::runs
