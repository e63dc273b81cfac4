#include "series/WallDepth.h"

#include <algorithm>
#include <vector>

#include "frozen/SurfaceNormals.h"
#include "profile/kernels/RayFrame.h"

namespace qnl::series {

namespace {

constexpr double kWindowFactor = 3.0;

/// Three arrays by node. The job's own normals may have become sink vectors.
struct Normals {
    explicit Normals(const FrozenLayerJob& job)
        : x(static_cast<std::size_t>(job.m_nNodes) + 1), y(x.size()), z(x.size()) {
        job.m_pOptKer->ComputeNodeSurfaceNormal(x.data(), y.data(), z.data());
        if (job.m_bHasIntermediateTimes == 1) {
            frozen::SmoothSurfaceNormals(*job.m_pOptKer, x.data(), y.data(), z.data());
        }
    }
    Vector3 Inward(int node) const {
        const auto n = static_cast<std::size_t>(node);
        return {-x[n], -y[n], -z[n]};
    }

    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;
};

bool IsPartNode(const FrozenLayerJob& job, int node) {
    return job.m_pNotRunnerNode[job.p_Node[node].label] == 1;
}

}  // namespace

double DepthSpan(const profile::PassElementMesh& mesh, const int* passElements, int count,
                 const Vector3& inward) {
    if (count < 1) {
        return 0.0;
    }
    profile::RayFrame frame;
    BuildRayFrame(frame, inward);
    const Vector3 axis = profile::DepthAxis(frame);
    double first = Dot(axis, profile::ReferencePoint(mesh.Record(passElements[0])));
    double last = first;
    for (int j = 1; j < count; ++j) {
        const double depth = Dot(axis, profile::ReferencePoint(mesh.Record(passElements[j])));
        first = std::min(first, depth);
        last = std::max(last, depth);
    }
    return last - first;
}

DeepWalls CountDeepWalls(const FrozenLayerJob& job) {
    DeepWalls walls;
    walls.window = kWindowFactor * job.m_dGeomTolerance;
    if (!job.m_pNodeSearchResults || !job.m_pSurfNodeList) {
        return walls;
    }
    const Normals normals(job);
    const profile::PassElementMesh mesh{job.p_Surfce, job.p_Cell,
                                        mesh::PassElementNumbering{job.m_nSurfaces}};
    for (int i = 1; i <= job.m_nSurfaceNodes; ++i) {
        const CSurfNodeSearch& record = job.m_pNodeSearchResults[static_cast<std::size_t>(i)];
        const int node = job.m_pSurfNodeList[static_cast<std::size_t>(i)];
        Vector3 inward = normals.Inward(node);
        if (record.m_nPassElems < 2 || !IsPartNode(job, node) || !Normalise(inward)) {
            continue;
        }
        ++walls.nodes;
        walls.deep +=
            DepthSpan(mesh, record.m_pPassElems.get(), record.m_nPassElems, inward) > walls.window ? 1 : 0;
    }
    return walls;
}

}  // namespace qnl::series
