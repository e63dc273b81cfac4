#include "layout/ProjectFolders.h"

#include <initializer_list>

#include "base/Text.h"
#include "base/WindowsPath.h"
#include "platform/Stages.h"

namespace qnl::layout {

namespace {

std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

}  // namespace

std::string MeshFolder(std::string_view project) {
    return Joined({project, "\\", kMeshFolder});
}

std::string MeshPath(std::string_view project, std::string_view file) {
    return Joined({MeshFolder(project), "\\", file});
}

std::string MaterialFolder(std::string_view project) {
    return Joined({project, "\\", kMaterialFolder});
}

std::string MaterialPath(std::string_view project, std::string_view file) {
    return Joined({MaterialFolder(project), "\\", file});
}

std::string RunFolder(std::string_view project, std::string_view run) {
    return Joined({project, "\\", kRunFolderMark, run});
}

std::string RunPath(std::string_view project, std::string_view name, std::string_view run,
                    std::string_view extension) {
    return Joined({RunFolder(project, run), "\\", name, run, extension});
}

std::string ComposedResultPath(std::string_view stageFile) {
    std::string result = CutExtension(stageFile);
    for (const Stage& stage : kStages) {
        result += Holds(stageFile, stage.pattern) ? stage.resultExtension : "";
    }
    return result;
}

std::string SearchPath(std::string_view meshPath) {
    return ReplaceExtension(meshPath, ".sur");
}

std::string SmoothedSearchPath(std::string_view meshPath) {
    return ReplaceExtension(meshPath, "_s.sur");
}

}  // namespace qnl::layout
