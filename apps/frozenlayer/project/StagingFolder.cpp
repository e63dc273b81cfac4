#include "project/StagingFolder.h"

#include <filesystem>

#include "layout/ProjectFolders.h"
#include "project/ProjectPaths.h"

namespace qnl::project {

namespace fs = std::filesystem;

StagingFolder::StagingFolder(const std::string& target, std::string_view run) : path_(target + ".part") {
    fs::remove_all(path_);
    for (const std::string& folder :
         {layout::MeshFolder(path_), layout::MaterialFolder(path_), layout::RunFolder(path_, run)}) {
        fs::create_directories(NativePath(folder));
    }
}

StagingFolder::~StagingFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void StagingFolder::MoveTo(const std::string& target) const {
    fs::remove_all(target);
    fs::rename(path_, target);
}

}  // namespace qnl::project
