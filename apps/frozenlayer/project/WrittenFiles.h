#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace qnl::project {

/// Notes the files of some folders, to tell later which of them are new or changed.
class WrittenFiles {
public:
    /// Folders as Windows-style paths; one that is not there counts as empty.
    explicit WrittenFiles(std::vector<std::string> folders);

    /// Files written since construction, as this system's users write them, in the order of the folders
    /// and then of their names.
    std::vector<std::string> List() const;

private:
    struct State {
        std::filesystem::file_time_type time;
        std::uintmax_t size;
        bool operator==(const State& other) const { return time == other.time && size == other.size; }
    };
    using States = std::map<std::string, State>;

    static States Look(const std::string& folder);

    std::vector<std::string> folders_;
    std::vector<States> before_;
};

}  // namespace qnl::project
