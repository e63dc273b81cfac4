#include "project/ProjectInputs.h"

#include <optional>

#include "base/Text.h"
#include "base/TokenReader.h"
#include "base/WindowsPath.h"
#include "layout/MarkerLog.h"
#include "layout/ProjectFolders.h"
#include "layout/RunFile.h"
#include "platform/HostFiles.h"

namespace qnl::project {

namespace {

/// A launcher word of this many bytes does not fit its buffer.
constexpr std::size_t kWordBuffer = 255;

void RequireFile(const std::string& path, const std::string& role) {
    if (FolderExists(path)) {
        throw InputProblem(NativePath(path) + ": " + role + " is expected here, not a folder");
    }
    if (!FileExists(path)) {
        throw InputProblem(NativePath(path) + " is missing: " + role);
    }
    if (!HostFile(path, "rb")) {
        throw InputProblem(NativePath(path) + " cannot be opened for reading: " + role);
    }
}

void RequireShortWords(const StageFile& base) {
    for (const std::string& word : {base.Path(), base.directory, base.name}) {
        if (word.size() >= kWordBuffer) {
            throw InputProblem(NativePath(word) + ": the path has " + std::to_string(word.size()) +
                               " bytes and at most 254 fit; run from a folder nearer to the project, with a"
                               " relative path");
        }
    }
}

/// The evaluation looks for the marker log of every stage but cool and heating-cooling, and its path has a
/// buffer of its own.
bool LooksForMarkerLog(const std::string& path) {
    const auto holds = [&](const Stage& stage) { return Holds(path, stage.pattern); };
    return holds(kFlowStage) || holds(kPackStage) || !(holds(kCoolStage) || holds(kHeatingCoolingStage));
}

void RequireShortRunFolder(const StageFile& base) {
    const std::string folder = base.RunFolder();
    const std::size_t most = kWordBuffer - 1 - layout::kMarkerLogName.size() - 1;
    if (folder.size() > most && LooksForMarkerLog(base.Path())) {
        throw InputProblem(NativePath(folder) + ": the path of the run's folder has " +
                           std::to_string(folder.size()) + " bytes and at most " + std::to_string(most) +
                           " fit; run from a folder nearer to the project, with a relative path");
    }
}

void RequireNamed(const std::string& named, const std::string& runFile, const std::string& entry) {
    if (named.empty()) {
        throw InputProblem(NativePath(runFile) + " names no " + entry);
    }
}

/// Where the evaluation of one output time writes. A path with the extensions of several stages gets all of
/// their results' extensions, and the probe's name gets another ".csv" at every later time.
std::string ResultPath(const StageFile& base, int index, bool fibreProbe) {
    std::string result = layout::ComposedResultPath(base.Path());
    result += fibreProbe ? ".csv" : "";
    if (index == 0) {
        return result;
    }
    return IndexedName(result, index) + (fibreProbe ? ".csv" : "");
}

void RefuseFolder(const std::string& result) {
    if (FolderExists(result)) {
        throw InputProblem(NativePath(result) +
                           " is a folder, and the result is to be written under this name: move the folder"
                           " away, or give it another name");
    }
}

std::string NothingFound(const std::string& word, bool fibreProbe) {
    return NativePath(word) + (fibreProbe
                                   ? ": no fibre result is found in this folder; a project holds it as"
                                     " Analysis/Run<run>/<name><run>.k4o"
                                   : ": no stage result is found in this folder; a project holds them as"
                                     " Analysis/Run<run>/<name><run>.k4f (or .k4p, .k4c, .k4hc, .k4w)");
}

}  // namespace

ProjectInputs ReadProjectInputs(const StageFile& base) {
    ProjectInputs inputs;
    inputs.runFile = base.AtIndex(0).Sibling(".run");
    std::optional<TokenReader> file;
    if (FileExists(inputs.runFile)) {
        file = OpenText(inputs.runFile);
    }
    if (file) {
        const layout::RunFileNames names = layout::ReadRunFileNames(*file);
        inputs.meshFile = names.mesh ? layout::MeshPath(base.directory, *names.mesh) : "";
        inputs.materialFile = names.material ? layout::MaterialPath(base.directory, *names.material) : "";
    }
    return inputs;
}

StageFile ChooseStageFile(const std::string& word, bool fibreProbe) {
    if (!FolderExists(word)) {
        RequireFile(word, "the stage result to evaluate");
        StageFile file = SplitStagePath(word);
        if (file.index > 0) {
            throw InputProblem(NativePath(word) + " is intermediate output time " +
                               std::to_string(file.index) + ": name the base file " +
                               NativePath(file.AtIndex(0).Path()) + " instead");
        }
        return file;
    }
    for (const StageFile& file : FindBaseStageFiles(word)) {
        if ((file.extension == kFibreExtension) == fibreProbe) {
            return file;
        }
    }
    throw InputProblem(NothingFound(word, fibreProbe));
}

void CheckProjectFiles(const StageFile& base) {
    RequireShortWords(base);
    RequireShortRunFolder(base);
    RequireFile(base.AtIndex(0).Sibling(".run"), "the run file, which names the mesh and the material");
    const ProjectInputs inputs = ReadProjectInputs(base);
    RequireNamed(inputs.meshFile, inputs.runFile, "mesh ([MESH], MeshCount = 1, Mesh1 = <file>)");
    RequireFile(inputs.meshFile, "the mesh that " + NativePath(inputs.runFile) + " names");
    RequireNamed(inputs.materialFile, inputs.runFile,
                 "material ([MATERIAL], MaterialCount = 1, Material1 = <file>)");
    RequireFile(inputs.materialFile, "the material that " + NativePath(inputs.runFile) + " names");
}

std::string StagesNote(const StageFile& base) {
    const std::string path = base.Path();
    std::string stages;
    int found = 0;
    for (const Stage& stage : kStages) {
        if (path.find(stage.pattern) != std::string::npos) {
            stages += (found++ == 0 ? "" : " and ") + std::string(stage.title);
        }
    }
    return found < 2 ? ""
                     : NativePath(path) + ": the path holds the extensions of " + stages +
                           ", and the run takes it for all of them; rename the folder or the project"
                           " to evaluate one";
}

void CheckInputs(const StageFile& base, int intermediateTimes, bool fibreProbe) {
    CheckProjectFiles(base);
    for (int index = 1; index <= intermediateTimes; ++index) {
        RequireFile(base.AtIndex(index).Path(), "intermediate output time " + std::to_string(index));
    }
    for (int index = 0; index <= intermediateTimes; ++index) {
        RefuseFolder(ResultPath(base, index, fibreProbe));
    }
}

}  // namespace qnl::project
