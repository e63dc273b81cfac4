#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "demo/DemoCooling.h"
#include "results/ResultFile.h"

namespace qnl::demo {

enum class DemoStage { Flow, Pack, Cool, Warp };

/// Extension of a stage's result files, with its ".".
std::string_view DemoExtension(DemoStage stage);

/// True for the stages that have intermediate output times.
bool HasDemoTimes(DemoStage stage);

/// The demo material file: a generic polypropylene that freezes at 130 degC.
std::string_view DemoMaterialText();

/// What a stage gives at `points` (mm, in the order of their labels) after `seconds`: temperature from the
/// cooling; velocity along the part, fastest in the hot core and dying away; density from the material at
/// 10 MPa; volume shrinkage from there to 25 degC and 0.1 MPa; displacement of an even contraction with a
/// bend along the part.
std::vector<results::ResultItem> MakeDemoItems(DemoStage stage, const DemoCooling& cooling,
                                               const std::vector<kernel::Point>& points, double seconds);

}  // namespace qnl::demo
