#include "profile/ResolvedFields.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "context/FieldSlots.h"
#include "context/RunConditions.h"
#include "profile/JobViews.h"

namespace qnl::profile {

namespace {

/// A field of the profile, and when its quantities are formed.
struct FieldUse {
    FieldSlot slot;
    RunCondition used;
};

bool UsesShrinkage(const RunTraits& run) {
    return run.warp || run.flow || run.intermediateTimes;
}
bool UsesGas(const RunTraits& run) {
    return run.gas || run.gasInCool;
}
bool UsesCoolingTime(const RunTraits& run) {
    return run.cool || run.fillCoolingTime;
}

/// In the order of ProfileField.
constexpr std::array<FieldUse, 6> kFields{{
    {kTemperature, Always},
    {kVolumeShrinkage, UsesShrinkage},
    {kGasMarker, UsesGas},
    {kSpeed, IsNotCool},
    {kCoolingTime, UsesCoolingTime},
    {kDensity, HasIntermediateTimes},
}};

FieldKernel& KernelOf(FrozenLayerJob& job) {
    if (!job.m_pFieldKernel) {
        job.m_pFieldKernel = MakeFieldKernel(*job.m_pOptKer);
        if (!job.m_pFieldKernel) {
            throw std::runtime_error(
                "the mesh kernel does not recover gradients, so there is no resolved mode: evaluate in the "
                "corrected mode");
        }
        job.m_pFieldKernel->PrepareSlots(job.m_nThreads);
    }
    return *job.m_pFieldKernel;
}

bool IsUsed(const FieldUse& field, const RunTraits& run, FieldsWanted wanted) {
    return wanted == FieldsWanted::Temperature ? field.slot == kTemperature : field.used(run);
}

}  // namespace

void RecoverTemperature(FrozenLayerJob& job) {
    FieldKernel& kernel = KernelOf(job);
    const double* const temperatures = job.m_pNodeData[kTemperature].get();
    job.m_pFieldGradients = std::make_unique<double[]>(3 * (static_cast<std::size_t>(job.m_nNodes) + 1));
    job.m_fieldReport = kernel.RecoverGradients(&temperatures, 1, job.m_pFieldGradients.get());
}

ProfileInput FieldsOf(const FrozenLayerJob& job, FieldsWanted wanted) {
    const RunTraits run = TraitsOf(job);
    ProfileInput input{};
    input.mesh = {job.p_Node, job.p_Cell};
    for (std::size_t f = 0; f < kFields.size(); ++f) {
        if (IsUsed(kFields[f], run, wanted)) {
            input.fields[f].values = job.m_pNodeData[kFields[f].slot].get();
        }
    }
    NodalField& temperature = input.fields.front();
    temperature.gradients = job.m_pFieldGradients.get();
    temperature.known = RangeOfCooling(input.mesh, temperature.values, job.m_nNodes, job.m_nCells);
    if (run.flow && wanted == FieldsWanted::OfTheStage) {
        std::transform(std::begin(job.m_pNodeVector), std::end(job.m_pNodeVector), input.velocity.begin(),
                       [](const OwnedArray<float>& component) { return component.get(); });
    }
    return input;
}

RayProfile ResolveRay(const FrozenLayerJob& job, const NodeRay& ray, const FoundElements& found,
                      ProfileScratch& scratch) {
    const std::array<double, 3> origin{ray.place.x, ray.place.y, ray.place.z};
    const std::array<double, 3> direction{ray.direction.x, ray.direction.y, ray.direction.z};
    ResolvedProfile& resolved = scratch.resolved;
    resolved.Sample(job.m_pFieldKernel->FindPieces(origin, direction, found.numbers, found.count, ray.slot));
    const int count = resolved.Count();
    scratch.Prepare(count);
    int* const elements = scratch.ProfileArrays().elements.elements;
    for (int j = 1; j <= count; ++j) {
        elements[j] = resolved.Cells()[j] + job.m_nSurfaces;
    }
    RayProfile profile;
    profile.direction = ray.direction;
    profile.elements = {resolved.Depths(), {elements, count}};
    profile.temperatures = resolved.Values(ProfileField::Temperature);
    profile.samples = {resolved.Depths(), profile.temperatures, {elements, count}};
    return profile;
}

}  // namespace qnl::profile
