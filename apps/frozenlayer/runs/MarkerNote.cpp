#include "runs/MarkerNote.h"

#include "layout/MarkerLog.h"
#include "platform/Stages.h"
#include "results/ResultFile.h"

namespace qnl::runs {

namespace {

std::string MarkerLogPath(const project::StageFile& base) {
    return base.RunFolder() + "\\" + std::string(layout::kMarkerLogName);
}

bool IsText(const std::string& stageFile) {
    constexpr int kNotBinary = -4;
    try {
        results::ReadResultSummary(stageFile);
        return false;
    } catch (const results::ResultFileError& error) {
        return error.Status() == kNotBinary;
    }
}

}  // namespace

std::string MarkerNote(const project::StageFile& base) {
    const Stage* stage = FindStage(base.extension);
    if (stage == nullptr || stage->kind != StageKind::Flow) {
        return {};
    }
    const std::string path = MarkerLogPath(base);
    const layout::MarkerLog log = layout::LookAtMarkerLog(path);
    if (log == layout::MarkerLog::Complete) {
        return {};
    }
    return project::NativePath(path) +
           (log == layout::MarkerLog::Missing ? " is missing" : " is not complete (no [EOF] in it)") +
           ": the normals are not smoothed, and there are no packing index, no sink marks and no flake colour"
           " intensity";
}

std::string ShrinkageNote(const project::StageFile& base, int intermediateTimes, int analysisCode) {
    const bool isFlow = base.extension == kFlowStage.pattern;
    const bool looksAtLog = (isFlow && FindAnalysisCode(analysisCode).hasIntermediateTimes) ||
                            base.extension == kPackStage.pattern;
    if (!looksAtLog || layout::LookAtMarkerLog(MarkerLogPath(base)) != layout::MarkerLog::Complete) {
        return {};
    }
    for (int index = 0; index <= intermediateTimes; ++index) {
        const std::string stageFile = base.AtIndex(index).Path();
        if (IsText(stageFile)) {
            return project::NativePath(stageFile) +
                   " is a text: with a complete log of intermediate output times its volume shrinkage is "
                   "taken for the "
                   "gas value, and the run for a gas-assisted one; " +
                   (isFlow ? "--analysis-code 2 evaluates it without the log"
                           : "a binary result tells the two apart");
        }
    }
    return {};
}

bool IsMarkerComplaint(const std::string& line) {
    return line.find(layout::kMarkerLogName) != std::string::npos &&
           line.find("doesn't exist") != std::string::npos;
}

}  // namespace qnl::runs
