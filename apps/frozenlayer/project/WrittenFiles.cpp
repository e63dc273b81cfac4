#include "project/WrittenFiles.h"

#include <utility>

#include "project/ProjectPaths.h"

namespace qnl::project {

WrittenFiles::WrittenFiles(std::vector<std::string> folders) : folders_(std::move(folders)) {
    for (const std::string& folder : folders_) {
        before_.push_back(Look(folder));
    }
}

std::vector<std::string> WrittenFiles::List() const {
    std::vector<std::string> written;
    for (std::size_t f = 0; f < folders_.size(); ++f) {
        for (const auto& [path, state] : Look(folders_[f])) {
            const auto old = before_[f].find(path);
            if (old == before_[f].end() || !(old->second == state)) {
                written.push_back(path);
            }
        }
    }
    return written;
}

WrittenFiles::States WrittenFiles::Look(const std::string& folder) {
    namespace fs = std::filesystem;
    States states;
    std::error_code failed;
    for (fs::directory_iterator entry(NativePath(folder), failed), end; !failed && entry != end;
         entry.increment(failed)) {
        std::error_code unreadable;
        const fs::file_time_type time = fs::last_write_time(entry->path(), unreadable);
        const std::uintmax_t size = unreadable ? 0 : fs::file_size(entry->path(), unreadable);
        if (!unreadable) {
            states.emplace(entry->path().string(), State{time, size});
        }
    }
    return states;
}

}  // namespace qnl::project
