#include "page/PageTemplate.h"

#include <filesystem>
#include <vector>

#include "host/HostSystem.h"
#include "platform/HostFiles.h"
#include "project/ProjectPaths.h"

namespace qnl::page {

namespace {

namespace fs = std::filesystem;

/// Beside the program, where the install rules put it, then that of the source the program was built from.
std::vector<std::string> Places() {
    std::vector<std::string> places;
    const fs::path program = host::ProgramPath();
    if (!program.empty()) {
        const fs::path folder = program.parent_path();
        places.push_back((folder / "viewer.html").string());
        places.push_back((folder.parent_path() / "share/frozenlayer/viewer.html").string());
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
        if (!project::FileExists(path) || !ReadText(path, text)) {
            continue;
        }
        const std::size_t place = text.find(mark);
        if (place == std::string::npos || text.find(mark, place + 1) != std::string::npos) {
            std::string problem = path + " is not the results page: it does not hold ";
            problem += mark + " exactly once; take the file from the program's own source";
            throw project::InputProblem(problem);
        }
        return {text.substr(0, place), text.substr(place + mark.size())};
    }
    throw project::InputProblem(places.front() +
                                " is missing: the results page; install the program anew, or put "
                                "viewer.html of its source there");
}

}  // namespace qnl::page
