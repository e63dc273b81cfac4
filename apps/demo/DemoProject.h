#pragma once

#include <string>
#include <vector>

#include "demo/DemoStages.h"

namespace qnl::demo {

/// Output times of a demo history, s, ascending.
inline const std::vector<double>& DemoTimes() {
    static const std::vector<double> times{0.5, 1.0, 2.0, 3.0, 4.0, 5.0, 6.5, 8.0};
    return times;
}

struct DemoRequest {
    std::string folder;  ///< of the project; made with everything above it
    DemoShape shape = DemoShape::Plate;
    DemoStage stage = DemoStage::Flow;
    int cells = 0;
    bool shuffled = false;
    std::vector<double> times = DemoTimes();  ///< ascending; stages with one time take the last
};

struct DemoSummary {
    std::string stageFile;  ///< base result file
    int nodes = 0;
    int cells = 0;
    int times = 0;
};

/// Writes the complete project "demo", run 1: mesh, material, run file, one result file an output time, the
/// last being the base time and the others numbered from 1, and, where there are such, the marker log.
/// Files of an earlier demo project in the folder that would not be written again are removed. Each file
/// appears complete or not at all. Raises std::runtime_error, with a message that names the file or
/// folder, for one that cannot be made; the faults recorded by the writers are taken into it.
DemoSummary WriteDemoProject(const DemoRequest& request);

}  // namespace qnl::demo
