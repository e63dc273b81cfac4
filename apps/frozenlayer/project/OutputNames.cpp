#include "project/OutputNames.h"

#include <algorithm>
#include <filesystem>

#include "project/ProjectPaths.h"

namespace qnl::project {

namespace {

std::string WithoutEnding(const std::string& out, const std::vector<std::string_view>& endings) {
    for (const std::string_view ending : endings) {
        const std::size_t begin = out.size() - std::min(out.size(), ending.size());
        if (std::string_view(out).substr(begin) == ending) {
            return out.substr(0, begin);
        }
    }
    return out;
}

/// Empty when files can be made in the folder; "" is the present one.
std::string ProblemOfFolder(const std::string& folder) {
    return folder.empty() || FolderExists(folder)
               ? ""
               : folder + " is no folder: make it first, or name another place";
}

}  // namespace

std::string ProblemOfFileName(const std::string& name, const std::vector<std::string_view>& endings,
                              const char* what) {
    const std::filesystem::path path(name);
    if (std::find(endings.begin(), endings.end(), path.extension().string()) == endings.end()) {
        return "\"" + name + "\" is no name of a " + what + ": end it in " + std::string(endings.front());
    }
    return ProblemOfFolder(path.parent_path().string());
}

std::string NameOfOutput(const std::string& out, const std::vector<std::string_view>& endings) {
    std::string name = WithoutEnding(out, endings);
    const std::filesystem::path path(NativePath(name));
    if (path.filename().empty()) {
        throw InputProblem("\"" + out + "\" names no file: give a name, such as part");
    }
    const std::string problem = ProblemOfFolder(path.parent_path().string());
    if (!problem.empty()) {
        throw InputProblem(problem);
    }
    return name;
}

std::string ProblemOfOutputName(const std::string& out, const std::vector<std::string_view>& endings) {
    try {
        NameOfOutput(out, endings);
        return {};
    } catch (const InputProblem& problem) {
        return problem.what();
    }
}

void RefuseExisting(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        std::error_code failed;
        if (std::filesystem::exists(NativePath(path), failed)) {
            throw InputProblem(NativePath(path) +
                               " is there already: choose another --out, or add --force to replace it");
        }
    }
}

}  // namespace qnl::project
