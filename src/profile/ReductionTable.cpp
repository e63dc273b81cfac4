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
    RunCondition applies;
};

using Run = const RunTraits&;

/// All quantities in the order in which a node's are formed. The order matters where a later one replaces
/// what an earlier one gave, and for the depth window.
constexpr Reduction kReductions[] = {
    {ReduceToFrozenRatio, Window::Set, [](Run run) { return !run.warp; }},
    {ReduceToWarpIndicator, Window::Unused, [](Run run) { return run.warp; }},
    {ReduceToShrinkLocation, Window::Unused, [](Run run) { return !run.warp && run.intermediateTimes; }},
    {ReduceToTemperatures, Window::Taken, Always},
    {ReduceToPackingIndex, Window::Taken, HasIntermediateTimes},
    {ReduceToSinkDepth, Window::Unused, HasIntermediateTimes},
    {ReduceToBulkTemperature, Window::Taken, IsNotCool},
    {ReduceToFrozenRatioInPolymer, Window::Set,
     [](Run run) { return run.cool ? run.gasInCool : run.gas && run.gasRestricts; }},
    {ReduceToSkin, Window::Set, HasGasAndIsNotCool},
    {ReduceToPackingIndexToGas, Window::Taken,
     [](Run run) { return HasGasAndIsNotCool(run) && run.gasRestricts && run.intermediateTimes; }},
    {ReduceToWallDifference, Window::Unused, IsCool},
    {ReduceToMaxCoolingTime, Window::Set, [](Run run) { return run.cool || run.fillCoolingTime; }},
    {ReduceToFlakeIntensity, Window::Unused, HasFlakesAndIsNotCool},
    {ReduceToFlow, Window::Taken, HasFlow},
};

void GatherElementValues(Reduced& node) {
    const RunTraits& run = node.inputs.run;
    node.shrinkage =
        AtElements(node, ProfileField::VolumeShrinkage, node.inputs.shrinkage, ProfileScratch::kShrinkageRow);
    if (HasIntermediateTimes(run)) {
        node.densities =
            AtElements(node, ProfileField::Density, node.inputs.density, ProfileScratch::kDensityRow);
    }
    if (HasGasAndIsNotCool(run)) {
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
        if (!reduction.applies(inputs.run)) {
            continue;
        }
        if (reduction.window == Window::Set) {
            SetWindow(window, inputs.t);
        }
        node.window = window;
        reduction.reduce(node);
    }
}

bool ReadsWindowBeforeSetting(const RunTraits& run) {
    bool taken = false;
    for (const Reduction& reduction : kReductions) {
        const bool applies = reduction.applies(run);
        if (applies && reduction.window == Window::Set) {
            return taken;
        }
        taken = taken || (applies && reduction.window == Window::Taken);
    }
    return false;
}

}  // namespace qnl::profile
