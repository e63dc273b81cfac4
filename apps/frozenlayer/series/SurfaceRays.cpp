#include "series/SurfaceRays.h"

#include <omp.h>

#include <cstdint>

#include "base/ThreadFailure.h"
#include "frozen/SurfaceNormals.h"
#include "profile/kernels/RayFrame.h"
#include "profile/kernels/SampleMerging.h"

namespace qnl::series {

namespace {

/// Outward, by component and node, 1-based.
std::array<std::vector<double>, 3> OutwardNormals(const FrozenLayerJob& job) {
    std::array<std::vector<double>, 3> normals;
    for (std::vector<double>& component : normals) {
        component.resize(static_cast<std::size_t>(job.m_nNodes) + 1);
    }
    auto& [x, y, z] = normals;
    job.m_pOptKer->ComputeNodeSurfaceNormal(x.data(), y.data(), z.data());
    if (job.m_bHasIntermediateTimes == 1) {
        frozen::SmoothSurfaceNormals(*job.m_pOptKer, x.data(), y.data(), z.data());
    }
    return normals;
}

void TraceRay(const OpenedProject& project, const NodeRecord& node, std::size_t i, SurfaceRays& rays) {
    Vector3& inward = rays.inward[i];
    if (!Normalise(inward)) {
        inward = {0.0, 0.0, 0.0};
        return;
    }
    kernel::RayWalker& walker = *project.Mesh().rays;
    const kernel::Point origin{node.x, node.y, node.z};
    const kernel::Point direction{inward.x, inward.y, inward.z};
    const int slot = omp_get_thread_num();
    int count = 0;
    const int* found = walker.Find(count, origin, direction, slot);
    rays.elements[i].assign(found, found + count);
    rays.wall[i] = walker.InsideEnd(origin, direction, slot);
}

}  // namespace

SurfaceRays TraceSurfaceRays(const OpenedProject& project, const Surface& surface) {
    constexpr int kChunk = 64;
    const std::size_t nodes = surface.Nodes();
    SurfaceRays rays{std::vector<Vector3>(nodes), std::vector<double>(nodes),
                     std::vector<std::vector<int>>(nodes)};
    const std::array<std::vector<double>, 3> normals = OutwardNormals(project.Job());
    ThreadFailure failure;
#pragma omp parallel for schedule(dynamic, kChunk)
    for (std::int64_t i = 0; i < static_cast<std::int64_t>(nodes); ++i) {
        const auto number = static_cast<std::size_t>(i);
        const auto node = static_cast<std::size_t>(surface.nodes[number]);
        failure.Guard([&] {
            rays.inward[number] = {-normals[0][node], -normals[1][node], -normals[2][node]};
            TraceRay(project, project.Job().p_Node[node], number, rays);
        });
    }
    failure.RaiseAgain();
    return rays;
}

DepthProfile SortByDepth(const OpenedProject& project, const std::vector<int>& elements,
                         const Vector3& inward) {
    profile::RayFrame frame;
    BuildRayFrame(frame, inward);
    const Vector3 axis = profile::DepthAxis(frame);
    const profile::PassElementMesh mesh = project.Elements();
    const int count = static_cast<int>(elements.size());
    DepthProfile profile{std::vector<double>(elements.size() + 1), std::vector<int>(elements.size() + 1)};
    for (std::size_t j = 1; j <= elements.size(); ++j) {
        profile.ids[j] = elements[j - 1];
        profile.depths[j] = Dot(axis, profile::ReferencePoint(mesh.Record(elements[j - 1])));
    }
    project.Job().m_pOptKer->shellSorting(count, profile.depths.data(), profile.ids.data());
    const double first = count > 0 ? profile.depths[1] : 0.0;
    for (std::size_t j = 1; j <= elements.size(); ++j) {
        profile.depths[j] -= first;
    }
    return profile;
}

DepthProfile MergeProfile(const OpenedProject& project, const DepthProfile& profile,
                          std::vector<double>& temperatures) {
    const FrozenLayerJob& job = project.Job();
    const profile::PassElementField field = project.Temperatures();
    const int count = profile.Count();
    std::vector<double> values(profile.ids.size());
    for (std::size_t j = 1; j < values.size(); ++j) {
        values[j] = field[profile.ids[j]];
    }
    DepthProfile samples{std::vector<double>(values.size()), std::vector<int>(values.size())};
    temperatures.assign(values.size(), 0.0);
    const int merged = MergeCoincidentPassElems(
        {{profile.depths.data(), count}, {values.data(), count}, {profile.ids.data(), count}},
        {job.m_nSurfaces},
        {profile::CoincidenceLimit(job.m_dBoxMax[2], job.m_dBoxMin[2]), job.m_dGeomTolerance},
        {samples.depths.data(), temperatures.data(), samples.ids.data()});
    const std::size_t entries = static_cast<std::size_t>(merged) + 1;
    samples.depths.resize(entries);
    samples.ids.resize(entries);
    temperatures.resize(entries);
    return samples;
}

}  // namespace qnl::series
