#include "frozen/SinkMarkDisplacement.h"

#include <cmath>
#include <vector>

namespace qnl::frozen {

namespace {

constexpr double kFixedUpTo = 0.1;
constexpr int kRounds = 200;
constexpr int kSweepsARound = 2;

std::vector<int> SurfaceNodes(const FrozenLayerJob& job) {
    std::vector<unsigned char> seen(static_cast<std::size_t>(job.m_nNodes) + 1, 0);
    std::vector<int> nodes;
    for (int s = 1; s <= job.m_nSurfaces; ++s) {
        const SurfaceRecord& face = job.p_Surfce[s];
        for (int corner = 1; corner <= face.nNode; ++corner) {
            const int node = face.nodes[corner];
            if (seen[static_cast<std::size_t>(node)] == 0) {
                seen[static_cast<std::size_t>(node)] = 1;
                nodes.push_back(node);
            }
        }
    }
    return nodes;
}

double Displacement(const FrozenLayerJob& job, int axis, int node) {
    const OwnedArray<double>& values = job.m_pWarpDisplacement[axis];
    return values ? values[static_cast<std::size_t>(node)] : 0.0;
}

double InwardDisplacement(const FrozenLayerJob& job, int node) {
    const double x = -job.m_pNormalX[node];
    const double y = -job.m_pNormalY[node];
    const double z = -job.m_pNormalZ[node];
    const double length = std::sqrt(x * x + y * y + z * z) + 1e-20;
    return (x / length) * Displacement(job, 0, node) + (y / length) * Displacement(job, 1, node) +
           (z / length) * Displacement(job, 2, node);
}

}  // namespace

void ComputeSinkMarkDisplacement(FrozenLayerJob& job, double* frozenRatio) {
    std::vector<int> fixed;
    std::vector<double> reference(static_cast<std::size_t>(job.m_nNodes) + 1, 0.0);
    std::vector<double> own(reference);
    for (const int node : SurfaceNodes(job)) {
        const std::size_t v = static_cast<std::size_t>(node);
        own[v] = InwardDisplacement(job, node);
        if (frozenRatio[node] > kFixedUpTo) {
            reference[v] = 0.0;
        } else {
            reference[v] = own[v];
            fixed.push_back(node);
        }
    }
    for (int round = 0; round < kRounds; ++round) {
        job.m_pOptKer->SmoothSurfaceNodeValue(reference.data(), kSweepsARound);
        for (const int node : fixed) {
            reference[static_cast<std::size_t>(node)] = own[static_cast<std::size_t>(node)];
        }
    }
    for (const int node : fixed) {
        own[static_cast<std::size_t>(node)] = 0.0;
        reference[static_cast<std::size_t>(node)] = 0.0;
    }
    for (std::size_t v = 0; v < own.size(); ++v) {
        frozenRatio[v] = own[v] - reference[v];
    }
}

}  // namespace qnl::frozen
