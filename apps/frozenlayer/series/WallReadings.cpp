#include "series/WallReadings.h"

#include <omp.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "base/ThreadFailure.h"
#include "mesh/MeshNodes.h"
#include "profile/FrozenWall.h"
#include "profile/ResolvedFields.h"

namespace qnl::series {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

double Hottest(const profile::PassElementField& temperatures, const std::vector<int>& elements) {
    double hottest = temperatures[PassElement(elements.front())];
    for (const int element : elements) {
        hottest = std::max(hottest, temperatures[PassElement(element)]);
    }
    return hottest;
}

void ReadByAverages(const OpenedProject& project, const Surface& surface, const SurfaceRays& rays,
                    WallReadings& walls) {
    const profile::PassElementField temperatures = project.Temperatures();
    for (std::size_t i = 0; i < surface.Nodes(); ++i) {
        if (HasProfile(project, surface, rays, i)) {
            walls.hottest[i] = Hottest(temperatures, rays.elements[i]);
        }
    }
}

void ClearLayers(const Surface& surface, WallReadings& walls) {
    for (std::vector<float>& values : walls.layers) {
        values.assign(surface.Nodes(), std::numeric_limits<float>::quiet_NaN());
    }
}

void StoreWall(const WallLayers& layers, std::size_t i, WallReadings& walls) {
    walls.hottest[i] = layers.hottest;
    const auto values = ValuesOf(layers);
    for (std::size_t k = 0; k < values.size(); ++k) {
        walls.layers[k][i] = values[k];
    }
}

void ReadInsideCells(const OpenedProject& project, const Surface& surface, const SurfaceRays& rays,
                     WallReadings& walls) {
    constexpr int kChunk = 64;
    ThreadFailure failure;
    omp_set_num_threads(project.Job().m_nThreads);
#pragma omp parallel
    {
        RayFollower follower(project, surface, rays);
#pragma omp for schedule(dynamic, kChunk)
        for (std::int64_t i = 0; i < static_cast<std::int64_t>(surface.Nodes()); ++i) {
            failure.Guard([&] {
                const auto number = static_cast<std::size_t>(i);
                if (HasProfile(project, surface, rays, number) && follower.Follow(number).Count() >= 2) {
                    StoreWall(follower.Layers(), number, walls);
                }
            });
        }
    }
    failure.RaiseAgain();
}

}  // namespace

bool HasProfile(const OpenedProject& project, const Surface& surface, const SurfaceRays& rays,
                std::size_t i) {
    return rays.elements[i].size() >= 2 && mesh::IsPartNode(project.Job(), NodeId(surface.nodes[i]));
}

std::array<float, kWallNames.size()> ValuesOf(const WallLayers& layers) {
    return {static_cast<float>(layers.frozenHere), static_cast<float>(layers.frozenFar),
            static_cast<float>(layers.moltenCore), static_cast<float>(layers.wall)};
}

WallReadings ReadWalls(OpenedProject& project, const Surface& surface, const SurfaceRays& rays) {
    WallReadings walls;
    walls.hottest.assign(surface.Nodes(), kNothing);
    if (!project.SeesInsideCells()) {
        ReadByAverages(project, surface, rays, walls);
        return walls;
    }
    project.RecoverTemperature();
    ClearLayers(surface, walls);
    ReadInsideCells(project, surface, rays, walls);
    return walls;
}

std::vector<NodeWall> WallsOfRun(const FrozenLayerJob& job) {
    std::vector<NodeWall> walls;
    const int nodes = job.m_wallLayers.empty() ? 0 : job.m_nNodes;
    for (int n = 1; n <= nodes; ++n) {
        if (job.m_pHasProfile[n] != 0 && mesh::IsPartNode(job, NodeId(n))) {
            walls.push_back({n, job.m_wallLayers[static_cast<std::size_t>(n)]});
        }
    }
    return walls;
}

WallReadings ReadWalls(const std::vector<NodeWall>& walls, const Surface& surface) {
    WallReadings readings;
    readings.hottest.assign(surface.Nodes(), kNothing);
    ClearLayers(surface, readings);
    for (std::size_t i = 0; i < surface.Nodes(); ++i) {
        const auto own = std::lower_bound(walls.begin(), walls.end(), surface.nodes[i],
                                          [](const NodeWall& wall, int node) { return wall.node < node; });
        if (own != walls.end() && own->node == surface.nodes[i]) {
            StoreWall(own->layers, i, readings);
        }
    }
    return readings;
}

RayFollower::RayFollower(const OpenedProject& project, const Surface& surface, const SurfaceRays& rays)
    : project_(project), surface_(surface), rays_(rays) {
    scratch_.resolved.TakeInput(project.TemperatureField());
}

const profile::ResolvedProfile& RayFollower::Follow(std::size_t i) {
    const FrozenLayerJob& job = project_.Job();
    const std::vector<int>& elements = rays_.elements[i];
    profile::ResolveRay(
        job, {mesh::PlaceOf(job, NodeId(surface_.nodes[i])), rays_.inward[i], omp_get_thread_num()},
        {elements.data(), static_cast<int>(elements.size())}, scratch_);
    return scratch_.resolved;
}

WallLayers RayFollower::Layers() const {
    return scratch_.resolved.Count() < 2 ? WallLayers{}
                                         : profile::FrozenWall(project_.Job(), scratch_.resolved);
}

}  // namespace qnl::series
