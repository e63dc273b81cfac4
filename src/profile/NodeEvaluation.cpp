#include "profile/NodeEvaluation.h"

#include <algorithm>
#include <cmath>

#include "context/FieldSlots.h"
#include "platform/Stages.h"
#include "profile/PassElementMesh.h"
#include "profile/kernels/ProfileKernels.h"
#include "profile/kernels/RayFrame.h"
#include "profile/kernels/SampleMerging.h"
#include "profile/search/PassElementSearch.h"

namespace qnl::profile {

namespace {

using mesh::PassElementNumbering;

/// The profile of one node; the views lie in the scratch of the thread.
struct NodeProfile {
    Vector3 direction;
    mesh::PassElementNumbering numbering;
    OneBased<const double> depths;
    OneBased<const double> temperatures;
    OneBased<const double> shrinkage;
    OneBased<const double> densities;  ///< empty in runs without intermediate times
    OneBased<const int> ids;
    OneBased<const double> sampleDepths;
    OneBased<const double> sampleTemperatures;
    OneBased<const int> sampleIds;
};

PassElementField Field(const FrozenLayerJob& job, FieldSlot slot) {
    return {job.m_pSurfData[slot].get(), job.m_pCellData[slot].get(), {job.m_nSurfaces}};
}

OneBased<const double> Gather(const PassElementField& field, OneBased<const int> ids, double* target) {
    for (int j = 1; j <= ids.Count(); ++j) {
        target[j] = field[ids[j]];
    }
    return {target, ids.Count()};
}

double DepthWindow(const FrozenLayerJob& job) {
    return 3.0 * job.m_dGeomTolerance;
}

/// Stores the depth window of the kernels that set it and gives it. The store is made only where it
/// changes something, so that threads do not take the cache line from each other.
double SetWindow(FrozenLayerJob& job) {
    const double window = DepthWindow(job);
    if (job.m_dKernelScratch != window) {
        job.m_dKernelScratch = window;
    }
    return window;
}

/// Fills depths and ids of the scratch, sorted by depth.
void SortByDepth(const FrozenLayerJob& job, const Vector3& direction, const int* found, int count,
                 ProfileScratch& scratch) {
    RayFrame frame;
    BuildRayFrame(frame, direction);
    const Vector3 axis = DepthAxis(frame);
    const PassElementMesh mesh{job.p_Surfce, job.p_Cell, {job.m_nSurfaces}};
    double* depths = scratch.Doubles(ProfileScratch::kDepth);
    int* ids = scratch.ElementIds();
    for (int j = 1; j <= count; ++j) {
        ids[j] = found[j - 1];
        depths[j] = Dot(axis, ReferencePoint(mesh.Record(ids[j])));
    }
    job.m_pOptKer->shellSorting(count, depths, ids);
}

/// Fills the samples of the profile.
void MergeSamples(const FrozenLayerJob& job, NodeProfile& profile, ProfileScratch& scratch) {
    double* sampleDepths = scratch.Doubles(ProfileScratch::kSampleDepth);
    double* sampleTemperatures = scratch.Doubles(ProfileScratch::kSampleTemperature);
    const int samples =
        MergeCoincidentPassElems({profile.depths, profile.temperatures, profile.ids}, profile.numbering,
                                 {CoincidenceLimit(job.m_dBoxMax[2], job.m_dBoxMin[2]), job.m_dGeomTolerance},
                                 {sampleDepths, sampleTemperatures, scratch.SampleIds()});
    profile.sampleDepths = {sampleDepths, samples};
    profile.sampleTemperatures = {sampleTemperatures, samples};
    profile.sampleIds = {scratch.SampleIds(), samples};
}

NodeProfile MakeProfile(const FrozenLayerJob& job, const Vector3& direction, int count,
                        ProfileScratch& scratch) {
    NodeProfile profile;
    profile.direction = direction;
    profile.numbering = {job.m_nSurfaces};
    profile.depths = {scratch.Doubles(ProfileScratch::kDepth), count};
    profile.ids = {scratch.ElementIds(), count};
    profile.temperatures =
        Gather(Field(job, kTemperature), profile.ids, scratch.Doubles(ProfileScratch::kTemperature));
    profile.shrinkage =
        Gather(Field(job, kVolumeShrinkage), profile.ids, scratch.Doubles(ProfileScratch::kShrinkage));

    if (job.m_bHasIntermediateTimes != 0) {
        profile.densities =
            Gather(Field(job, kDensity), profile.ids, scratch.Doubles(ProfileScratch::kDensity));
    }
    MergeSamples(job, profile, scratch);
    return profile;
}

void EvaluateFrozenRatio(FrozenLayerJob& job, const NodeProfile& profile, NodeProfileResult& result) {
    const double t = job.m_dGeomTolerance;
    if (job.m_bHasWarp != 0) {
        result[kSlotFrozenRatio] = CalcuShrinkLocation(profile.depths, profile.shrinkage, t, job.m_dMaxValue);
        return;
    }
    result[kSlotFrozenRatio] =
        CalcuFrozenRatio(profile.sampleDepths, profile.sampleTemperatures, job.m_dFreezeTemp, SetWindow(job));
    if (job.m_bHasIntermediateTimes != 0) {
        result[kSlotShrinkLocation] =
            CalcuShrinkLocation(profile.depths, profile.shrinkage, t, job.m_dMaxValue);
    }
}

void EvaluateTemperatures(const FrozenLayerJob& job, const NodeProfile& profile, NodeProfileResult& result) {
    const double window = job.m_dKernelScratch;
    const auto depths = profile.sampleDepths;
    const auto temperatures = profile.sampleTemperatures;
    int last = 1;
    result[kSlotMaxTemperature] = MaxInWindow(depths, temperatures, window, last);
    const bool single = depths.Count() == 1;
    result[kSlotCenterTemperature] = single ? temperatures[1] : ValueAtMiddle(depths, temperatures, last);
    result[kSlotAverageTemperature] =
        single ? temperatures[1] : AverageInWindow(depths, temperatures, window);
}

PackingProfile MakePackingProfile(const NodeProfile& profile) {
    return {profile.depths, profile.temperatures, profile.densities};
}

PackingLimits MakePackingLimits(const FrozenLayerJob& job) {
    return {job.m_dFreezeTemp, job.m_dFreezeDensity, job.m_dGeomTolerance, job.m_dKernelScratch};
}

void EvaluatePacking(const FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch,
                     NodeProfileResult& result) {
    result[kSlotPackingIndex] = CalcuPackingIndex(MakePackingProfile(profile), MakePackingLimits(job));
    result[kSlotSinkDepth] =
        CalcuSinkDepth(profile.depths, profile.shrinkage, job.m_dGeomTolerance, scratch.shrinkageBeyondWhole);
}

double FrozenRatioInPolymer(FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch) {
    const auto markers =
        Gather(Field(job, kGasMarker), profile.sampleIds, scratch.Doubles(ProfileScratch::kSampleValue));
    return CalcuFrozenRatioInPolymer(profile.sampleDepths, profile.sampleTemperatures, markers,
                                     job.m_dFreezeTemp, SetWindow(job));
}

double MaxCoolingTime(FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch) {
    const auto times =
        Gather(Field(job, kCoolingTime), profile.ids, scratch.Doubles(ProfileScratch::kElementValue));
    return MaxFromZeroInWindow(profile.depths, times, SetWindow(job));
}

void EvaluateGas(FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch,
                 NodeProfileResult& result) {
    const bool polymerAlone = FindAnalysisCode(job.m_nAnalysisType).polymerAlone;
    const auto markers =
        Gather(Field(job, kGasMarker), profile.ids, scratch.Doubles(ProfileScratch::kGasMarker));
    if (polymerAlone) {
        result[kSlotFrozenRatio] = FrozenRatioInPolymer(job, profile, scratch);
    }
    result[kSlotSkinRatio] = CalcuSkinRatio(profile.depths, markers, SetWindow(job));
    result[kSlotSkinOrMoldDifference] = CalcuSkinThickness(profile.depths, markers);
    if (polymerAlone && job.m_bHasIntermediateTimes != 0) {
        result[kSlotPackingIndex] =
            CalcuPackingIndexToGas(MakePackingProfile(profile), markers, MakePackingLimits(job));
    }
}

void EvaluateFlakes(const FrozenLayerJob& job, const NodeProfile& profile, NodeProfileResult& result) {
    TensorField tensor{};
    for (std::size_t k = 0; k < tensor.size(); ++k) {
        tensor[k] = job.m_pCellFiber[k].get();
        if (tensor[k] == nullptr) {
            return;
        }
    }
    const double intensity = CalcuFlakeIntensity(profile.depths, profile.ids, profile.numbering, tensor,
                                                 profile.direction, job.m_dGeomTolerance);
    result[kSlotFlakeIntensity] = intensity;
    if (job.m_nLogLevel > 1) {
        result[kSlotAverageTemperature] = intensity;
    }
}

/// What runs without a cool result add: bulk temperature, gas, cooling time of the filling, flakes.
void EvaluateMelt(FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch,
                  NodeProfileResult& result) {
    if (profile.sampleDepths.Count() >= 2) {
        const auto weights =
            Gather(Field(job, kBulkWeight), profile.sampleIds, scratch.Doubles(ProfileScratch::kSampleValue));
        result[kSlotBulkTemperature] = BulkAverageInWindow(profile.sampleDepths, profile.sampleTemperatures,
                                                           weights, job.m_dKernelScratch);
    } else {
        result[kSlotBulkTemperature] = profile.sampleTemperatures[1];
    }
    if (job.m_bIsGasIn != 0) {
        EvaluateGas(job, profile, scratch, result);
    }
    if (job.m_bFillHasCoolingTime != 0) {
        result[kSlotMaxCoolingTime] = MaxCoolingTime(job, profile, scratch);
    }
    if (job.m_bIsFlakeLightIntensity != 0) {
        EvaluateFlakes(job, profile, result);
    }
}

void EvaluateCooling(FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch,
                     NodeProfileResult& result) {
    if (job.m_bGasInCool != 0) {
        result[kSlotFrozenRatio] = FrozenRatioInPolymer(job, profile, scratch);
    }
    const auto temperatures = profile.sampleTemperatures;
    result[kSlotSkinOrMoldDifference] = std::abs(temperatures[temperatures.Count()] - temperatures[1]);
    result[kSlotMaxCoolingTime] = MaxCoolingTime(job, profile, scratch);
}

/// One velocity component by pass element; faces have none.
OneBased<const double> GatherVelocity(const float* cells, const NodeProfile& profile, double* target) {
    const auto ids = profile.ids;
    for (int j = 1; j <= ids.Count(); ++j) {
        const bool none = cells == nullptr || profile.numbering.IsFace(ids[j]);
        target[j] = none ? 0.0 : static_cast<double>(cells[profile.numbering.CellIndex(ids[j])]);
    }
    return {target, ids.Count()};
}

void EvaluateFlow(const FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch,
                  NodeProfileResult& result) {
    constexpr ProfileSlot kSlots[] = {kSlotAverageVelocityU, kSlotAverageVelocityV, kSlotAverageVelocityW};
    const double window = job.m_dKernelScratch;
    int last = 1;
    result[kSlotMaxVolumeShrinkage] = MaxInWindow(profile.depths, profile.shrinkage, window, last);
    for (int k = 0; k < 3; ++k) {
        const auto velocities = GatherVelocity(job.m_pCellVector[k].get(), profile,
                                               scratch.Doubles(ProfileScratch::kElementValue));
        result[kSlots[k]] = MeanNonZeroInWindow(profile.depths, velocities, window);
    }
}

/// The order matters: some kernels read the depth window that others have set before them.
void EvaluateProfile(FrozenLayerJob& job, const NodeProfile& profile, ProfileScratch& scratch,
                     NodeProfileResult& result) {
    EvaluateFrozenRatio(job, profile, result);
    EvaluateTemperatures(job, profile, result);
    if (job.m_bHasIntermediateTimes != 0) {
        EvaluatePacking(job, profile, scratch, result);
    }
    if (job.m_bHasCool != 0) {
        EvaluateCooling(job, profile, scratch, result);
    } else {
        EvaluateMelt(job, profile, scratch, result);
    }
    if (job.m_bHasFlow != 0) {
        EvaluateFlow(job, profile, scratch, result);
    }
}

}  // namespace

}  // namespace qnl::profile

int CalcuFrozenAtNode(FrozenLayerJob& job, int i, double x, double y, double z, double dx, double dy,
                      double dz, NodeProfileResult& result, qnl::profile::ProfileScratch& scratch) {
    scratch.hasProfile = false;
    scratch.shrinkageBeyondWhole = false;
    qnl::Vector3 direction{dx, dy, dz};
    if (!qnl::Normalise(direction)) {
        return -1;
    }
    int count = 0;
    const int* found = FindNodePassElems(job, i, count, x, y, z, direction.x, direction.y, direction.z,
                                         qnl::profile::SearchSlot(job));
    if (count < 2) {
        return 1;
    }
    scratch.Prepare(count);
    qnl::profile::SortByDepth(job, direction, found, count, scratch);
    qnl::profile::EvaluateProfile(job, qnl::profile::MakeProfile(job, direction, count, scratch), scratch,
                                  result);
    scratch.hasProfile = true;
    return 1;
}

namespace qnl::profile {

bool WindowChangesOnTheWay(const FrozenLayerJob& job) {
    const bool setFirst = job.m_bHasWarp == 0;
    const bool setLater = job.m_bHasCool != 0 || job.m_bIsGasIn != 0 || job.m_bFillHasCoolingTime != 0;
    return !setFirst && setLater && job.m_dKernelScratch != DepthWindow(job);
}

}  // namespace qnl::profile
