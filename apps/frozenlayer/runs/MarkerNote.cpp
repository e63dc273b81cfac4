#include "runs/MarkerNote.h"

#include "layout/MarkerLog.h"
#include "platform/Stages.h"

namespace qnl::runs {

std::string MarkerNote(const project::StageFile& base) {
    const Stage* stage = FindStage(base.extension);
    if (stage == nullptr || stage->kind != StageKind::Flow) {
        return {};
    }
    const std::string path = base.RunFolder() + "\\" + std::string(layout::kMarkerLogName);
    const layout::MarkerLog log = layout::LookAtMarkerLog(path);
    if (log == layout::MarkerLog::Complete) {
        return {};
    }
    return project::NativePath(path) +
           (log == layout::MarkerLog::Missing ? " is missing" : " is not complete (no [EOF] in it)") +
           ": the normals are not smoothed, and there are no packing index, no sink marks and no flake colour"
           " intensity";
}

bool IsMarkerComplaint(const std::string& line) {
    return line.find(layout::kMarkerLogName) != std::string::npos &&
           line.find("doesn't exist") != std::string::npos;
}

}  // namespace qnl::runs
