#include "frozen/SinkMarkDisplacement.h"

#include <vector>

#include "frozen/SurfaceCorners.h"
#include "mesh/MeshNodes.h"

namespace qnl::frozen {

namespace {

constexpr double kFixedUpTo = 0.1;
constexpr int kRounds = 200;
constexpr int kSweepsARound = 2;

/// Values by node, node 0 included.
using NodeValues = std::vector<double>;

double& At(NodeValues& values, NodeId node) {
    return values[static_cast<std::size_t>(node.Value())];
}

std::vector<NodeId> SurfaceNodes(const FrozenLayerJob& job) {
    const OwnedArray<bool> seen = NewFromOne<bool>(job.m_nNodes);
    std::vector<NodeId> nodes;
    ForEachSurfaceCorner(job, [&](NodeId node) {
        if (!seen[node.Value()]) {
            seen[node.Value()] = true;
            nodes.push_back(node);
        }
    });
    return nodes;
}

double Displacement(const FrozenLayerJob& job, int axis, NodeId node) {
    const OwnedArray<double>& values = job.m_pWarpDisplacement[axis];
    return values ? values[node.Value()] : 0.0;
}

double InwardDisplacement(const FrozenLayerJob& job, NodeId node) {
    const Vector3 inward = mesh::InwardNormal(job, node);
    const double length = Length(inward) + 1e-20;
    return (inward.x / length) * Displacement(job, 0, node) +
           (inward.y / length) * Displacement(job, 1, node) +
           (inward.z / length) * Displacement(job, 2, node);
}

}  // namespace

void ComputeSinkMarkDisplacement(FrozenLayerJob& job, double* frozenRatio) {
    std::vector<NodeId> fixed;
    NodeValues reference(static_cast<std::size_t>(job.m_nNodes) + 1);
    NodeValues own(reference);
    for (const NodeId node : SurfaceNodes(job)) {
        At(own, node) = InwardDisplacement(job, node);
        if (!(frozenRatio[node.Value()] > kFixedUpTo)) {
            At(reference, node) = At(own, node);
            fixed.push_back(node);
        }
    }
    for (int round = 0; round < kRounds; ++round) {
        job.m_pOptKer->SmoothSurfaceNodeValue(reference.data(), kSweepsARound);
        for (const NodeId node : fixed) {
            At(reference, node) = At(own, node);
        }
    }
    for (const NodeId node : fixed) {
        At(own, node) = 0.0;
        At(reference, node) = 0.0;
    }
    for (std::size_t v = 0; v < own.size(); ++v) {
        frozenRatio[v] = own[v] - reference[v];
    }
}

}  // namespace qnl::frozen
