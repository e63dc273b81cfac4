#include "PageTemplate.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include "ProjectPaths.h"
#include "platform/HostFiles.h"

namespace qnl {

namespace {

namespace fs = std::filesystem;

/// Beside the program, where the install rules put it, then that of the source the program was built from.
std::vector<std::string> Places() {
    std::vector<std::string> places;
    std::error_code failed;
    const fs::path program = fs::read_symlink("/proc/self/exe", failed);
    if (!failed) {
        places.push_back((program.parent_path() / "viewer.html").string());
        places.push_back((program.parent_path().parent_path() / "share/frozenlayer/viewer.html").string());
    }
    places.emplace_back(QNL_PAGE_TEMPLATE);
    return places;
}

bool ReadText(const std::string& path, std::string& text) {
    const HostFile file(path, "rb");
    return file && ReadAll(file.Get(), text);
}

}  // namespace

PageTemplate ReadPageTemplate() {
    const std::string mark = "<!--DATA-->";
    const std::vector<std::string> places = Places();
    for (const std::string& path : places) {
        std::string text;
        if (!FileExists(path) || !ReadText(path, text)) {
            continue;
        }
        const std::size_t place = text.find(mark);
        if (place == std::string::npos || text.find(mark, place + 1) != std::string::npos) {
            throw InputProblem(path + " is not the results page: it does not hold " + mark +
                               " exactly once; take the file from the program's own source");
        }
        return {text.substr(0, place), text.substr(place + mark.size())};
    }
    throw InputProblem(places.front() +
                       " is missing: the results page; install the program anew, or put "
                       "viewer.html of its source there");
}

}  // namespace qnl
