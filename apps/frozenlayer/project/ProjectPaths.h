#pragma once

#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Stages.h"

namespace qnl::project {

/// What keeps a command from doing its work, in one sentence that names the path.
class InputProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One stage file (or another file of a run) of a project,
/// "<directory>\Analysis\Run<run>\<name><run>[_<index>]<extension>".
struct StageFile {
    std::string directory;
    std::string name;
    std::string run;
    std::string extension;  ///< with its "."
    int index = 0;          ///< 0: base output time

    std::string RunFolder() const;
    std::string Path() const;
    /// The run folder's file of the same name with another extension.
    std::string Sibling(std::string_view otherExtension) const;
    StageFile AtIndex(int otherIndex) const;
};

/// The last part of a path of either style.
std::string FileName(std::string_view path);

/// The path as Windows-style text: "/" becomes "\".
std::string WindowsStyle(std::string_view path);

/// Title of the stage that an extension stands for, "fibre" for fibre results; null for another one.
const char* StageTitle(std::string_view extension);

/// Takes the path of a file of a run apart, relative ones too. Raises InputProblem when its folders and
/// name are not those of one.
StageFile SplitRunPath(std::string_view path);

/// The same; the extension must be that of a stage as well.
StageFile SplitStagePath(std::string_view path);

/// Every base stage file in the run folders of a project: the latest run first, in it flow, pack, cool,
/// heating-cooling, warp, fibre. Empty for a folder that is no project.
std::vector<StageFile> FindBaseStageFiles(std::string_view projectDirectory);

/// Indices of the files of the same name, run and extension that are there; 0 is the base time.
std::set<int> ExistingIndices(const StageFile& file);

/// Number of intermediate output times beside a base file: those numbered from 1 without a gap. Raises
/// InputProblem when a later one stands behind a gap.
int CountIntermediateTimes(const StageFile& base);

/// The path as this system's users write it.
std::string NativePath(std::string_view path);

bool FileExists(std::string_view path);
bool FolderExists(std::string_view path);

}  // namespace qnl::project
