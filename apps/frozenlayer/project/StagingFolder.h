#pragma once

#include <string>
#include <string_view>

namespace qnl::project {

/// The folder in which a project with one run is put together, beside its place, with the folders of a
/// project in it. It is removed with everything in it unless it was moved to its place. Raises
/// std::filesystem::filesystem_error.
class StagingFolder {
public:
    StagingFolder(const std::string& target, std::string_view run);
    ~StagingFolder();
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    const std::string& Path() const { return path_; }
    /// Replaces what stands at `target`.
    void MoveTo(const std::string& target) const;

private:
    std::string path_;
};

}  // namespace qnl::project
