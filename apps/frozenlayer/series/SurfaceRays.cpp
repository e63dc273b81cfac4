#include "series/SurfaceRays.h"

#include <omp.h>

#include <cstdint>

#include "base/ThreadFailure.h"
#include "host/Interrupts.h"
#include "mesh/MeshNodes.h"
#include "profile/JobViews.h"
#include "series/InwardNormals.h"

namespace qnl::series {

namespace {

void TraceRay(const OpenedProject& project, const Vector3& place, std::size_t i, SurfaceRays& rays) {
    Vector3& inward = rays.inward[i];
    if (!Normalise(inward)) {
        inward = {0.0, 0.0, 0.0};
        return;
    }
    kernel::RayWalker& walker = *project.Mesh().rays;
    const kernel::Point origin{place.x, place.y, place.z};
    const kernel::Point direction{inward.x, inward.y, inward.z};
    const int slot = omp_get_thread_num();
    int count = 0;
    const int* found = walker.Find(count, rays.wall[i], origin, direction, slot);
    rays.elements[i].assign(found, found + count);
}

}  // namespace

SurfaceRays TraceSurfaceRays(const OpenedProject& project, const Surface& surface) {
    constexpr int kChunk = 64;
    const std::size_t nodes = surface.Nodes();
    SurfaceRays rays{std::vector<Vector3>(nodes), std::vector<double>(nodes),
                     std::vector<std::vector<int>>(nodes)};
    const InwardNormals normals(project.Job());
    ThreadFailure failure;
#pragma omp parallel for schedule(dynamic, kChunk)
    for (std::int64_t i = 0; i < static_cast<std::int64_t>(nodes); ++i) {
        const auto number = static_cast<std::size_t>(i);
        const NodeId node(surface.nodes[number]);
        failure.Guard([&] {
            host::RaiseIfInterrupted();
            rays.inward[number] = normals.Of(node);
            TraceRay(project, mesh::PlaceOf(project.Job(), node), number, rays);
        });
    }
    failure.RaiseAgain();
    return rays;
}

DepthProfile ElementsByDepth(const OpenedProject& project, const std::vector<int>& elements,
                             const Vector3& inward) {
    DepthProfile profile{0.0, std::vector<double>(elements.size() + 1),
                         std::vector<int>(elements.size() + 1)};
    const profile::SortedElements sorted =
        profile::SortAlongRay(profile::RayDepth(project.Elements(), inward), *project.Job().m_pOptKer,
                              {elements.data(), static_cast<int>(elements.size())},
                              {profile.depths.data(), profile.elements.data()});
    profile.start = sorted.Count() > 0 ? sorted.depths[1] : 0.0;
    return profile;
}

DepthProfile SamplesByDepth(const OpenedProject& project, const DepthProfile& profile,
                            std::vector<double>& temperatures) {
    const std::size_t room = profile.elements.size();
    const profile::RayMedium medium = profile::MediumOf(project.Job());
    const profile::SortedElements sorted{{profile.depths.data(), profile.Count()},
                                         {profile.elements.data(), profile.Count()}};
    std::vector<double> values(room);
    DepthProfile samples{profile.start, std::vector<double>(room), std::vector<int>(room)};
    temperatures.assign(room, 0.0);
    const profile::MergedSamples merged = profile::MergeAlongRay(
        sorted, Gather(medium.temperatures, sorted.elements, values.data()), medium.mesh.Numbering(),
        medium.limits, {samples.depths.data(), temperatures.data(), samples.elements.data()});
    const std::size_t entries = static_cast<std::size_t>(merged.Count()) + 1;
    samples.depths.resize(entries);
    samples.elements.resize(entries);
    temperatures.resize(entries);
    return samples;
}

}  // namespace qnl::series
