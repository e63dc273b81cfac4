#include "project/TargetPlace.h"

#include <array>
#include <cmath>
#include <filesystem>

#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "project/ProjectPaths.h"
#include "text/NumberText.h"

namespace qnl::project {

namespace {

namespace fs = std::filesystem;

/// The folder, or the nearest above it that is there.
fs::path ExistingFolder(const std::string& folder) {
    std::error_code failed;
    const fs::path native(NativePath(folder));
    fs::path place = fs::absolute(native.empty() ? fs::path(".") : native, failed).lexically_normal();
    while (place.has_relative_path() && !fs::exists(place, failed)) {
        place = place.parent_path();
    }
    return place;
}

/// As people tell sizes: three digits at most.
std::string SizeText(std::uintmax_t bytes) {
    constexpr std::array<const char*, 5> kUnits{"bytes", "kB", "MB", "GB", "TB"};
    constexpr double kStep = 1000.0;
    double size = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (size >= kStep && unit + 1 < kUnits.size()) {
        size /= kStep;
        ++unit;
    }
    const double digits = size < 10.0 ? 10.0 : 1.0;
    return text::NumberText(std::round(size * digits) / digits) + " " + kUnits[unit];
}

}  // namespace

void CheckWritable(const std::string& folder) {
    const fs::path place = ExistingFolder(folder);
    const std::vector<Fault> before = TakeFaults();
    const bool made = static_cast<bool>(ReplacedFile((place / "frozenlayer-check").string(), "wb"));
    const std::vector<Fault> found = TakeFaults();
    for (const Fault& fault : before) {
        RecordFault(fault);
    }
    if (!made) {
        throw InputProblem(place.string() + " cannot be written" +
                           (found.empty() ? "" : " (" + found.front().found + ")") +
                           ": no file can be made in that folder; allow it, or name another place");
    }
}

void CheckRoom(const std::string& folder, std::uintmax_t needed) {
    const fs::path place = ExistingFolder(folder);
    std::error_code unknown;
    const fs::space_info space = fs::space(place, unknown);
    const std::string problem = unknown ? "" : ProblemOfRoom(place.string(), needed, space.available);
    if (!problem.empty()) {
        throw InputProblem(problem);
    }
}

std::string ProblemOfRoom(const std::string& place, std::uintmax_t needed, std::uintmax_t available) {
    return needed <= available ? ""
                               : place + ": at least " + SizeText(needed) + " are needed and " +
                                     SizeText(available) + " are free; free space, or name another place";
}

std::string FolderOf(const std::string& file) {
    return fs::path(NativePath(file)).parent_path().string();
}

}  // namespace qnl::project
