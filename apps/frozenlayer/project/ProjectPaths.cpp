#include "project/ProjectPaths.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "base/Text.h"
#include "base/WindowsPath.h"
#include "layout/ProjectFolders.h"
#include "platform/HostFiles.h"

namespace qnl::project {

namespace {

namespace fs = std::filesystem;

using layout::kRunFolderMark;

bool IsNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// 0 for a number that is too large to be an index.
int ToNumber(std::string_view digits) {
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() ? number : 0;
}

/// Where "Analysis\Run" stands as whole folder names: at the start of the text or behind a "\".
std::size_t FindRunMark(std::string_view path) {
    for (std::size_t mark = path.rfind(kRunFolderMark); mark != std::string_view::npos;
         mark = mark == 0 ? std::string_view::npos : path.rfind(kRunFolderMark, mark - 1)) {
        if (mark == 0 || path[mark - 1] == '\\') {
            return mark;
        }
    }
    return std::string_view::npos;
}

std::string WithRunFolder(std::string_view path) {
    std::string text = WindowsStyle(path);
    if (FindRunMark(text) == std::string::npos) {
        std::error_code failed;
        const fs::path full = fs::absolute(HostPath(text), failed);
        text = failed ? text : WindowsStyle(full.lexically_normal().string());
    }
    return text;
}

/// Splits "<name><run>" or "<name><run>_<index>"; false when the run is not where it belongs.
bool SplitStem(std::string_view stem, StageFile& file) {
    const std::size_t underscore = stem.rfind('_');
    if (underscore != std::string_view::npos && IsNumber(stem.substr(underscore + 1)) &&
        EndsWith(stem.substr(0, underscore), file.run)) {
        const int index = ToNumber(stem.substr(underscore + 1));
        const std::string base(stem.substr(0, underscore));
        if (index >= 1 && IndexedName(base + ".x", index) == std::string(stem) + ".x") {
            file.index = index;
            stem = stem.substr(0, underscore);
        }
    }
    if (!EndsWith(stem, file.run)) {
        return false;
    }
    file.name = stem.substr(0, stem.size() - file.run.size());
    return true;
}

std::optional<StageFile> ParseStagePath(const std::string& path) {
    const std::size_t mark = FindRunMark(path);
    if (mark == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t runStart = mark + kRunFolderMark.size();
    const std::size_t runEnd = path.find('\\', runStart);
    if (runEnd == std::string::npos || runEnd == runStart ||
        path.find('\\', runEnd + 1) != std::string::npos) {
        return std::nullopt;
    }
    StageFile file;
    file.directory = mark == 0 ? "." : path.substr(0, mark - 1);
    file.run = path.substr(runStart, runEnd - runStart);
    const std::string fileName = path.substr(runEnd + 1);
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string::npos || !SplitStem(std::string_view(fileName).substr(0, dot), file)) {
        return std::nullopt;
    }
    file.extension = fileName.substr(dot);
    return file;
}

/// Numbers ascending, other texts behind them by their characters.
bool RunPrecedes(const std::string& a, const std::string& b) {
    if (IsNumber(a) && IsNumber(b)) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    }
    return IsNumber(a) != IsNumber(b) ? IsNumber(b) : a < b;
}

std::size_t StageOrder(const std::string& extension) {
    const auto found = std::find_if(kStages.begin(), kStages.end(),
                                    [&](const Stage& stage) { return stage.pattern == extension; });
    return static_cast<std::size_t>(found - kStages.begin());
}

bool ComesFirst(const StageFile& a, const StageFile& b) {
    if (a.run != b.run) {
        return RunPrecedes(b.run, a.run);
    }
    const std::size_t stageA = StageOrder(a.extension);
    const std::size_t stageB = StageOrder(b.extension);
    return stageA != stageB ? stageA < stageB : a.name < b.name;
}

template <typename Visit>
void VisitFolder(const std::string& folder, const Visit& visit) {
    std::error_code failed;
    for (fs::directory_iterator entry(HostPath(folder), failed), end; !failed && entry != end;
         entry.increment(failed)) {
        visit(entry->path().filename().string());
    }
}

}  // namespace

std::string StageFile::RunFolder() const {
    return layout::RunFolder(directory, run);
}

std::string StageFile::Sibling(std::string_view otherExtension) const {
    const std::string base = layout::RunPath(directory, name, run, otherExtension);
    return index == 0 ? base : IndexedName(base, index);
}

std::string StageFile::Path() const {
    return Sibling(extension);
}

StageFile StageFile::AtIndex(int otherIndex) const {
    StageFile other = *this;
    other.index = otherIndex;
    return other;
}

std::string FileName(std::string_view path) {
    return fs::path(NativePath(path)).filename().string();
}

std::string WindowsStyle(std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

const char* StageTitle(std::string_view extension) {
    if (const Stage* stage = FindStage(extension)) {
        return stage->title;
    }
    return extension == kFibreExtension ? "fibre" : nullptr;
}

StageFile SplitRunPath(std::string_view path) {
    const std::optional<StageFile> file = ParseStagePath(WithRunFolder(path));
    if (!file) {
        throw InputProblem(NativePath(path) +
                           ": a file of a run is expected at"
                           " <project>/Analysis/Run<run>/<name><run>.<extension>,"
                           " such as part/Analysis/Run1/part1.k4f");
    }
    return *file;
}

StageFile SplitStagePath(std::string_view path) {
    StageFile file = SplitRunPath(path);
    if (StageTitle(file.extension) == nullptr) {
        throw InputProblem(NativePath(path) + ": the extension \"" + file.extension +
                           "\" is none of a stage: .k4f flow, .k4p pack, .k4c cool, .k4hc heating-cooling,"
                           " .k4w warp, .k4o fibre");
    }
    return file;
}

std::vector<StageFile> FindBaseStageFiles(std::string_view projectDirectory) {
    std::string directory = WindowsStyle(projectDirectory);
    while (directory.size() > 1 && directory.back() == '\\') {
        directory.pop_back();
    }
    const std::string analysis = directory + "\\" + std::string(layout::kAnalysisFolder);
    std::vector<StageFile> files;
    VisitFolder(analysis, [&](const std::string& runFolder) {
        VisitFolder(analysis + "\\" + runFolder, [&](const std::string& fileName) {
            std::optional<StageFile> file = ParseStagePath(analysis + "\\" + runFolder + "\\" + fileName);
            if (file && file->index == 0 && StageTitle(file->extension) != nullptr) {
                files.push_back(std::move(*file));
            }
        });
    });
    std::sort(files.begin(), files.end(), ComesFirst);
    return files;
}

std::set<int> ExistingIndices(const StageFile& file) {
    std::set<int> indices;
    VisitFolder(file.RunFolder(), [&](const std::string& fileName) {
        const std::optional<StageFile> other = ParseStagePath(file.RunFolder() + "\\" + fileName);
        if (other && other->name == file.name && other->extension == file.extension) {
            indices.insert(other->index);
        }
    });
    return indices;
}

int CountIntermediateTimes(const StageFile& base) {
    std::set<int> indices = ExistingIndices(base);
    indices.erase(0);
    const int count = static_cast<int>(indices.size());
    if (count > 0 && *indices.rbegin() != count) {
        int missing = 1;
        while (indices.count(missing) == 1) {
            ++missing;
        }
        throw InputProblem(NativePath(base.AtIndex(missing).Path()) + " is missing while " +
                           NativePath(base.AtIndex(*indices.upper_bound(missing)).Path()) +
                           " is there: add it, or name the number of intermediate times to evaluate with"
                           " --intermediate-times");
    }
    return count;
}

std::string NativePath(std::string_view path) {
    return HostPath(path);
}

bool FileExists(std::string_view path) {
    std::error_code failed;
    return fs::is_regular_file(HostPath(path), failed);
}

bool FolderExists(std::string_view path) {
    std::error_code failed;
    return fs::is_directory(HostPath(path), failed);
}

}  // namespace qnl::project
