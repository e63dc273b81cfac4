#include "runs/RunPlace.h"

#include <cmath>
#include <cstdint>

#include "layout/ProjectFolders.h"
#include "project/OutputTime.h"
#include "project/ProjectInputs.h"
#include "project/TargetPlace.h"

namespace qnl::runs {

namespace {

/// A cube of n nodes has about 6 n^(2/3) of them on its surface, a thin part many more; half of that is what
/// a mesh that is finer inside may have.
double LeastSurfaceNodes(int nodes) {
    return 3.0 * std::cbrt(static_cast<double>(nodes) * nodes);
}

}  // namespace

void CheckRunPlace(const project::StageFile& base, int intermediateTimes) {
    constexpr double kResultBytes = 28.0;  // a label and the six values of a cool stage
    constexpr double kSearchBytes = 80.0;  // a ray that passes twenty elements
    const std::string mesh = project::ReadProjectInputs(base).meshFile;
    const bool isSearched = project::FileExists(layout::SearchPath(mesh)) ||
                            project::FileExists(layout::SmoothedSearchPath(mesh));
    project::CheckWritable(base.RunFolder());
    if (!isSearched) {
        project::CheckWritable(layout::MeshFolder(base.directory));
    }
    const double surface = LeastSurfaceNodes(project::ReadStageSummary(base.Path()).nodes);
    const double bytes =
        surface * (kResultBytes * (intermediateTimes + 1) + (isSearched ? 0.0 : kSearchBytes));
    project::CheckRoom(base.RunFolder(), static_cast<std::uintmax_t>(bytes));
}

}  // namespace qnl::runs
