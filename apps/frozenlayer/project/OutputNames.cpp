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

}  // namespace

std::string NameOfOutput(const std::string& out, const std::vector<std::string_view>& endings) {
    std::string name = WithoutEnding(out, endings);
    const std::filesystem::path path(NativePath(name));
    if (path.filename().empty()) {
        throw InputProblem("\"" + out + "\" names no file: give a name, such as part");
    }
    std::error_code failed;
    if (path.has_parent_path() && !std::filesystem::is_directory(path.parent_path(), failed)) {
        throw InputProblem(path.parent_path().string() +
                           " is no folder: make it first, or name another place");
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
