#include "profile/ReductionTable.h"

#include "profile/Reductions.h"
#include "profile/kernels/DepthWindow.h"

namespace qnl::profile {

namespace {

/// What a quantity does with the depth window.
enum class Window { Unused, Taken, Set };

struct Reduction {
    void (*reduce)(Reduced& node);
    Window window;
    bool (*applies)(const StageTraits& stage);
};

using Stage = const StageTraits&;

/// All quantities in the order in which a node's are formed. The order matters where a later one replaces
/// what an earlier one gave, and for the depth window.
constexpr Reduction kReductions[] = {
    {ReduceToFrozenRatio, Window::Set, [](Stage s) { return !s.warp; }},
    {ReduceToWarpIndicator, Window::Unused, [](Stage s) { return s.warp; }},
    {ReduceToShrinkLocation, Window::Unused, [](Stage s) { return !s.warp && s.intermediateTimes; }},
    {ReduceToTemperatures, Window::Taken, [](Stage) { return true; }},
    {ReduceToPackingIndex, Window::Taken, [](Stage s) { return s.intermediateTimes; }},
    {ReduceToSinkDepth, Window::Unused, [](Stage s) { return s.intermediateTimes; }},
    {ReduceToBulkTemperature, Window::Taken, [](Stage s) { return !s.cool; }},
    {ReduceToFrozenRatioInPolymer, Window::Set,
     [](Stage s) { return s.cool ? s.gasInCool : s.gas && s.gasRestricts; }},
    {ReduceToSkin, Window::Set, [](Stage s) { return !s.cool && s.gas; }},
    {ReduceToPackingIndexToGas, Window::Taken,
     [](Stage s) { return !s.cool && s.gas && s.gasRestricts && s.intermediateTimes; }},
    {ReduceToWallDifference, Window::Unused, [](Stage s) { return s.cool; }},
    {ReduceToMaxCoolingTime, Window::Set, [](Stage s) { return s.cool || s.fillCoolingTime; }},
    {ReduceToFlakeIntensity, Window::Unused, [](Stage s) { return !s.cool && s.flakes; }},
    {ReduceToFlow, Window::Taken, [](Stage s) { return s.flow; }},
};

void GatherElementValues(Reduced& node) {
    const StageTraits& stage = node.inputs.stage;
    node.shrinkage =
        AtElements(node, ProfileField::VolumeShrinkage, node.inputs.shrinkage, ProfileScratch::kShrinkageRow);
    if (stage.intermediateTimes) {
        node.densities =
            AtElements(node, ProfileField::Density, node.inputs.density, ProfileScratch::kDensityRow);
    }
    if (stage.gas && !stage.cool) {
        node.gasMarkers =
            AtElements(node, ProfileField::GasMarker, node.inputs.gasMarker, ProfileScratch::kGasMarkerRow);
    }
}

/// Stores only what changes something, so that threads do not take the cache line from each other.
void SetWindow(RelaxedValue<double>& window, double t) {
    if (window != DepthWindow(t)) {
        window = DepthWindow(t);
    }
}

}  // namespace

void ReduceProfile(Reduced node, RelaxedValue<double>& window) {
    const ProfileInputs& inputs = node.inputs;
    GatherElementValues(node);
    for (const Reduction& reduction : kReductions) {
        if (!reduction.applies(inputs.stage)) {
            continue;
        }
        if (reduction.window == Window::Set) {
            SetWindow(window, inputs.t);
        }
        node.window = window;
        reduction.reduce(node);
    }
}

bool ReadsWindowBeforeSetting(const StageTraits& stage) {
    bool taken = false;
    for (const Reduction& reduction : kReductions) {
        const bool applies = reduction.applies(stage);
        if (applies && reduction.window == Window::Set) {
            return taken;
        }
        taken = taken || (applies && reduction.window == Window::Taken);
    }
    return false;
}

}  // namespace qnl::profile
