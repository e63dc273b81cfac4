#include "profile/ResolvedFields.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>

#include "context/FieldSlots.h"
#include "context/RunConditions.h"
#include "profile/JobViews.h"

namespace qnl::profile {

namespace {

/// The fields whose gradients are recovered; the others are linear between nodes.
constexpr std::array<FieldSlot, 3> kRecovered{kTemperature, kVolumeShrinkage, kDensity};
constexpr std::ptrdiff_t kStride = 3 * static_cast<std::ptrdiff_t>(kRecovered.size());

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

NodalField FieldOf(const FrozenLayerJob& job, FieldSlot slot, bool used) {
    NodalField field;
    field.values = used ? job.m_pNodeData[slot].get() : nullptr;
    const auto* const recovered = std::find(kRecovered.begin(), kRecovered.end(), slot);
    if (used && recovered != kRecovered.end()) {
        field.gradients = job.m_pFieldGradients.get() + 3 * (recovered - kRecovered.begin());
        field.stride = kStride;
    }
    return field;
}

/// Heat leaves through the surface, so no place inside is colder than the coldest node.
double ColdestNode(const FrozenLayerJob& job) {
    const double* temperatures = job.m_pNodeData[kTemperature].get();
    return *std::min_element(temperatures + 1, temperatures + 1 + job.m_nNodes);
}

}  // namespace

void RecoverFields(FrozenLayerJob& job) {
    FieldKernel& kernel = KernelOf(job);
    if (!job.m_pFieldGradients) {
        job.m_pFieldGradients = std::make_unique<double[]>(static_cast<std::size_t>(kStride) *
                                                           (static_cast<std::size_t>(job.m_nNodes) + 1));
    }
    std::array<const double*, kRecovered.size()> fields{};
    std::transform(kRecovered.begin(), kRecovered.end(), fields.begin(),
                   [&](FieldSlot slot) { return job.m_pNodeData[slot].get(); });
    job.m_fieldReport =
        kernel.RecoverGradients(fields.data(), static_cast<int>(fields.size()), job.m_pFieldGradients.get());
}

ProfileInput FieldsOf(const FrozenLayerJob& job) {
    const bool cool = IsCool(job);
    ProfileInput input{};
    input.mesh = {job.p_Node, job.p_Cell};
    input.fields = {FieldOf(job, kTemperature, true),
                    FieldOf(job, kVolumeShrinkage, true),
                    FieldOf(job, kGasMarker, job.m_bIsGasIn == 1 || job.m_bGasInCool == 1),
                    FieldOf(job, kSpeed, !cool),
                    FieldOf(job, kCoolingTime, cool || job.m_bFillHasCoolingTime == 1),
                    FieldOf(job, kDensity, HasIntermediateTimes(job))};
    input.fields[kTemperature].lowest = ColdestNode(job);
    for (std::size_t k = 0; k < input.velocity.size(); ++k) {
        input.velocity[k] = HasFlow(job) ? job.m_pNodeVector[k].get() : nullptr;
    }
    return input;
}

RayProfile ResolveRay(const FrozenLayerJob& job, const NodeRay& ray, const FoundElements& found,
                      ProfileScratch& scratch) {
    const std::array<double, 3> origin{ray.place.x, ray.place.y, ray.place.z};
    const std::array<double, 3> direction{ray.direction.x, ray.direction.y, ray.direction.z};
    ResolvedProfile& resolved = scratch.resolved;
    resolved.Sample(job.m_pFieldKernel->FindPieces(origin, direction, found.numbers, found.count, ray.slot));
    const int count = std::max(resolved.Count(), 0);
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
