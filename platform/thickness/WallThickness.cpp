#include "thickness/WallThickness.h"

#include <omp.h>

#include <cstdint>

#include "base/ThreadFailure.h"
#include "base/Vector3.h"

namespace qnl::thickness {
namespace {

double InsideLength(kernel::RayWalker& rays, const NodeRecord& node, const kernel::Point& normal, int slot) {
    kernel::Point inward{-normal[0], -normal[1], -normal[2]};
    if (!Normalise(inward)) {
        return 0.0;
    }
    return rays.InsideEnd({node.x, node.y, node.z}, inward, slot);
}

}  // namespace

std::vector<double> InsideLengths(kernel::RayWalker& rays, const kernel::BoundaryGraph& boundary,
                                  const NodeRecord* nodes, const std::vector<kernel::Point>& normals) {
    constexpr int kChunk = 64;
    const std::vector<int>& boundaryNodes = boundary.Nodes();
    const auto count = static_cast<std::int64_t>(boundaryNodes.size());
    std::vector<double> lengths(boundaryNodes.size());
    ThreadFailure failure;
    rays.PrepareSlots(omp_get_max_threads());
#pragma omp parallel for schedule(dynamic, kChunk)
    for (std::int64_t i = 0; i < count; ++i) {
        const auto entry = static_cast<std::size_t>(i);
        const auto node = static_cast<std::size_t>(boundaryNodes[entry]) + 1;
        failure.Guard(
            [&] { lengths[entry] = InsideLength(rays, nodes[node], normals[node], omp_get_thread_num()); });
    }
    failure.RaiseAgain();
    return lengths;
}

std::vector<double> PositiveMeansAround(const kernel::BoundaryGraph& boundary,
                                        const std::vector<double>& values) {
    std::vector<double> means(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        double sum = 0.0;
        int count = 0;
        for (const int* neighbour = boundary.NeighboursBegin(i); neighbour != boundary.NeighboursEnd(i);
             ++neighbour) {
            const double value = values[static_cast<std::size_t>(*neighbour)];
            if (value > 0.0) {
                sum += value;
                ++count;
            }
        }
        means[i] = count > 0 ? sum / count : 0.0;
    }
    return means;
}

}  // namespace qnl::thickness
