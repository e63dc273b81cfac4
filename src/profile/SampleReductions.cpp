#include <cmath>

#include "profile/Reductions.h"
#include "profile/kernels/ProfileKernels.h"

namespace qnl::profile {

void ReduceToFrozenRatio(Reduced& node) {
    const MergedSamples& samples = node.profile.samples;
    node.result[kSlotFrozenRatio] =
        CalcuFrozenRatio(samples.depths, samples.temperatures, node.inputs.freezeTemperature, node.window);
}

void ReduceToFrozenRatioInPolymer(Reduced& node) {
    const MergedSamples& samples = node.profile.samples;
    const auto markers =
        AtSamples(node, ProfileField::GasMarker, node.inputs.gasMarker, ProfileScratch::kSampleValueRow);
    node.result[kSlotFrozenRatio] = CalcuFrozenRatioInPolymer(samples.depths, samples.temperatures, markers,
                                                              node.inputs.freezeTemperature, node.window);
}

void ReduceToTemperatures(Reduced& node) {
    const auto& [depths, temperatures, elements] = node.profile.samples;
    int last = 1;
    node.result[kSlotMaxTemperature] = MaxInWindow(depths, temperatures, node.window, last);
    const bool single = depths.Count() == 1;
    node.result[kSlotCenterTemperature] =
        single ? temperatures[1] : ValueAtMiddle(depths, temperatures, last);
    node.result[kSlotAverageTemperature] =
        single ? temperatures[1] : AverageInWindow(depths, temperatures, node.window);
}

void ReduceToBulkTemperature(Reduced& node) {
    const auto& [depths, temperatures, elements] = node.profile.samples;
    if (depths.Count() < 2) {
        node.result[kSlotBulkTemperature] = temperatures[1];
        return;
    }
    const auto speeds =
        AtSamples(node, ProfileField::BulkWeight, node.inputs.speed, ProfileScratch::kSampleValueRow);
    node.result[kSlotBulkTemperature] = BulkAverageInWindow(depths, temperatures, speeds, node.window);
}

void ReduceToWallDifference(Reduced& node) {
    const auto temperatures = node.profile.samples.temperatures;
    node.result[kSlotSkinOrMoldDifference] = std::abs(temperatures[temperatures.Count()] - temperatures[1]);
}

}  // namespace qnl::profile
