#include <algorithm>
#include <array>
#include <cstddef>

#include "profile/Reductions.h"
#include "profile/kernels/ProfileKernels.h"
#include "profile/resolved/ProfileReadings.h"

namespace qnl::profile {

namespace {

PackingProfile PackingOf(const Reduced& node) {
    return {node.profile.elements.depths, node.profile.temperatures, node.densities};
}

PackingLimits PackingLimitsOf(const Reduced& node) {
    return {node.inputs.freezeTemperature, node.inputs.freezeDensity, node.inputs.t, node.window};
}

double ShrinkLocation(const Reduced& node) {
    return CalcuShrinkLocation(node.profile.elements.depths, node.shrinkage, node.inputs.t,
                               node.inputs.maxShrinkage);
}

constexpr std::size_t kComponents = 3;

using Components = std::array<double*, kComponents>;

Components VelocityRows(ProfileScratch& scratch) {
    double* const first = scratch.Doubles(ProfileScratch::kVelocityRow);
    double* const second = scratch.Doubles(ProfileScratch::kSecondVelocityRow);
    return {first, second, scratch.Doubles(ProfileScratch::kThirdVelocityRow)};
}

/// Velocity components by element; faces have none.
void GatherVelocity(const VelocityField& cells, const Reduced& node, const Components& target) {
    const mesh::PassElementNumbering numbering = node.inputs.medium.mesh.Numbering();
    const auto elements = node.profile.elements.elements;
    for (int j = 1; j <= elements.Count(); ++j) {
        const bool isFace = numbering.IsFace(elements[j]);
        const CellId cell = numbering.Cell(elements[j]);
        for (std::size_t k = 0; k < kComponents; ++k) {
            target[k][j] = isFace || !cells[k] ? 0.0 : static_cast<double>(cells[k][cell]);
        }
    }
}

}  // namespace

OneBased<const double> AtElements(const Reduced& node, ProfileField field, const PassElementField& cells,
                                  ProfileScratch::Row row) {
    return node.resolved != nullptr
               ? node.resolved->Values(field)
               : Gather(cells, node.profile.elements.elements, node.scratch.Doubles(row));
}

OneBased<const double> AtSamples(const Reduced& node, ProfileField field, const PassElementField& cells,
                                 ProfileScratch::Row row) {
    return node.resolved != nullptr ? node.resolved->Values(field)
                                    : Gather(cells, node.profile.samples.elements, node.scratch.Doubles(row));
}

void ReduceToSkin(Reduced& node) {
    const auto depths = node.profile.elements.depths;
    node.result[kSlotSkinRatio] = CalcuSkinRatio(depths, node.gasMarkers, node.window);
    node.result[kSlotSkinOrMoldDifference] = CalcuSkinThickness(depths, node.gasMarkers);
}

void ReduceToMaxCoolingTime(Reduced& node) {
    const SortedElements& sorted = node.profile.elements;
    const auto times =
        AtElements(node, ProfileField::CoolingTime, node.inputs.coolingTime, ProfileScratch::kCoolingTimeRow);
    node.result[kSlotMaxCoolingTime] = MaxFromZeroInWindow(sorted.depths, times, node.window);
}

void ReduceToWarpIndicator(Reduced& node) {
    node.result[kSlotFrozenRatio] = ShrinkLocation(node);
}

void ReduceToShrinkLocation(Reduced& node) {
    node.result[kSlotShrinkLocation] = ShrinkLocation(node);
}

void ReduceToPackingIndex(Reduced& node) {
    node.result[kSlotPackingIndex] = CalcuPackingIndex(PackingOf(node), PackingLimitsOf(node));
}

void ReduceToPackingIndexToGas(Reduced& node) {
    node.result[kSlotPackingIndex] =
        CalcuPackingIndexToGas(PackingOf(node), node.gasMarkers, PackingLimitsOf(node));
}

void ReduceToSinkDepth(Reduced& node) {
    node.result[kSlotSinkDepth] = CalcuSinkDepth(node.profile.elements.depths, node.shrinkage, node.inputs.t,
                                                 node.result.shrinkageBeyondWhole);
}

void ReduceToFlow(Reduced& node) {
    constexpr ProfileSlot kSlots[] = {kSlotAverageVelocityU, kSlotAverageVelocityV, kSlotAverageVelocityW};
    const auto depths = node.profile.elements.depths;
    int last = 1;
    node.result[kSlotMaxVolumeShrinkage] = MaxInWindow(depths, node.shrinkage, node.window, last);
    if (node.resolved != nullptr) {
        constexpr ProfileField kFields[] = {ProfileField::VelocityU, ProfileField::VelocityV,
                                            ProfileField::VelocityW};
        for (std::size_t k = 0; k < kComponents; ++k) {
            const auto values = node.resolved->Values(kFields[k]);
            node.result[kSlots[k]] = values ? MeanNonZeroByLength(depths, values, node.window) : 0.0;
        }
        return;
    }
    const Components velocities = VelocityRows(node.scratch);
    GatherVelocity(node.inputs.velocity, node, velocities);
    for (std::size_t k = 0; k < kComponents; ++k) {
        node.result[kSlots[k]] = MeanNonZeroInWindow(depths, {velocities[k], depths.Count()}, node.window);
    }
}

void ReduceToFlakeIntensity(Reduced& node) {
    const TensorField& tensor = node.inputs.fiber;
    if (!std::all_of(tensor.begin(), tensor.end(),
                     [](const auto& component) { return static_cast<bool>(component); })) {
        return;
    }
    const SortedElements& sorted = node.profile.elements;
    const double intensity =
        CalcuFlakeIntensity(sorted.depths, sorted.elements, node.inputs.medium.mesh.Numbering(), tensor,
                            node.profile.direction, node.inputs.t);
    node.result[kSlotFlakeIntensity] = intensity;
    if (node.inputs.showsFlakesAsAverage) {
        node.result[kSlotAverageTemperature] = intensity;
    }
}

}  // namespace qnl::profile
