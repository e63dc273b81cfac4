#include "input/ResultFileSet.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "base/WindowsPath.h"
#include "context/Messages.h"
#include "layout/MarkerLog.h"
#include "layout/ProjectFolders.h"
#include "platform/HostFiles.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

constexpr int kComplete = 1;
constexpr int kNoLog = 3302;
constexpr std::size_t kLogPath = 255;

enum class LogCheck { None, ByAnalysisType, Always };

/// What a pattern in the input name means for the job.
struct StageRule {
    unsigned char FrozenLayerJob::*presence;
    LogCheck check;
};

// By stage pattern. A name that holds several patterns gets every extension, in their order.
constexpr std::array<StageRule, kStages.size()> kStageRules{{
    {&FrozenLayerJob::m_bHasFlow, LogCheck::ByAnalysisType},
    {&FrozenLayerJob::m_bHasFlow, LogCheck::Always},
    {&FrozenLayerJob::m_bHasCool, LogCheck::None},
    {&FrozenLayerJob::m_bHasCool, LogCheck::None},
    {&FrozenLayerJob::m_bHasWarp, LogCheck::None},
}};

bool IsLogChecked(const FrozenLayerJob& job, LogCheck check) {
    return check == LogCheck::Always ||
           (check == LogCheck::ByAnalysisType && FindAnalysisCode(job.m_nAnalysisType).hasIntermediateTimes);
}

void TakeStage(FrozenLayerJob& job, const StageRule& rule) {
    job.*rule.presence = 1;
    if (IsLogChecked(job, rule.check) && CheckIntermediateOutputLog(job) == kComplete) {
        job.m_bHasIntermediateTimes = 1;
    }
}

void LookForFibreResult(FrozenLayerJob& job, const std::string& path, bool flow) {
    if (!HostFile(path, "rb")) {
        job.m_bIsFlakeLightIntensity = 0;
        LogGeneral(job, "no EOF K4O\n");
    } else if (flow) {
        job.m_bIsFlakeLightIntensity = 1;
        LogGeneral(job, "isFlakeLightIntensity\n");
    }
}

}  // namespace

}  // namespace qnl::input

int SelectResultFiles(FrozenLayerJob& job) {
    const std::string_view input = job.m_szInputResult != nullptr ? job.m_szInputResult : "";
    const std::string result = qnl::layout::ComposedResultPath(input);
    for (std::size_t i = 0; i < qnl::kStages.size(); ++i) {
        if (qnl::Holds(input, qnl::kStages[i].pattern)) {
            qnl::input::TakeStage(job, qnl::input::kStageRules[i]);
        }
    }
    job.m_szResultFile.Set(result);
    if (job.m_bHasCool != 1 && CheckIntermediateOutputLog(job) == qnl::input::kComplete) {
        qnl::input::LookForFibreResult(job, qnl::ReplaceExtension(input, qnl::kFibreExtension),
                                       qnl::Holds(input, qnl::kFlowStage.pattern));
    }
    return 1;
}

int CheckIntermediateOutputLog(FrozenLayerJob& job) {
    qnl::FixedText<qnl::input::kLogPath> path;
    path.Set(qnl::CutFileName(job.m_szLogFile.View()) + "\\" + std::string(qnl::layout::kMarkerLogName));
    qnl::LogLine(job, path.Text());
    const qnl::layout::MarkerLog log = qnl::layout::LookAtMarkerLog(path.Text());
    if (log == qnl::layout::MarkerLog::Missing) {
        qnl::PrintGeneral("QNLIntermediateOutputTime.log doesn't exist !\n");
        return qnl::input::kNoLog;
    }
    return log == qnl::layout::MarkerLog::Complete ? qnl::input::kComplete : 0;
}
