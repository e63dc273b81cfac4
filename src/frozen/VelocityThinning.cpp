#include "frozen/VelocityThinning.h"

#include <algorithm>

#include "context/RunConditions.h"
#include "mesh/DataExtension.h"
#include "mesh/MeshNodes.h"

namespace qnl::frozen {

namespace {

constexpr double kStoredHalfSize = 0.0001;  // mm
constexpr double kOppositeNormals = -1e-30;

double LongestBoxSide(const FrozenLayerJob& job) {
    return std::max({job.m_dBoxMax[0] - job.m_dBoxMin[0], job.m_dBoxMax[1] - job.m_dBoxMin[1],
                     job.m_dBoxMax[2] - job.m_dBoxMin[2]});
}

double NormalProduct(const FrozenLayerJob& job, NodeId v, NodeId w) {
    return Dot(mesh::InwardNormal(job, v), mesh::InwardNormal(job, w));
}

bool HasKeptNeighbour(FrozenLayerJob& job, NodeId node, double h) {
    const Vector3 p = mesh::PlaceOf(job, node);
    int count = 0;
    const int* found =
        job.m_pSurfTree->SearchNearBlockID(p.x - h, p.y - h, p.z - h, p.x + h, p.y + h, p.z + h, count, 0);
    return std::any_of(found, found + count, [&job, node](int position) {
        return NormalProduct(job, node, mesh::ListedNode(job, ListPosition(position))) > kOppositeNormals;
    });
}

void KeepNode(FrozenLayerJob& job, ListPosition position) {
    const Vector3 p = mesh::PlaceOf(job, mesh::ListedNode(job, position));
    constexpr double d = kStoredHalfSize;
    job.m_pSurfTree->AddSurfaceToADTree(position.Value(), p.x - d, p.y - d, p.z - d, p.x + d, p.y + d,
                                        p.z + d);
}

}  // namespace

double ThinningDistance(double meanFaceSize, double longestSide) {
    return meanFaceSize > longestSide / 100.0 ? longestSide * 3.0 / 100.0 : 3.0 * meanFaceSize;
}

void ThinOutVelocities(FrozenLayerJob& job) {
    if (!HasFlow(job)) {
        return;
    }
    mesh::AverageSurfaceMeshSize(job);
    const double h = ThinningDistance(job.m_dSurAvgMeshSize, LongestBoxSide(job));
    for (ListPosition position(1); position <= ListPosition(job.m_nSurfaceNodes); ++position) {
        const NodeId node = mesh::ListedNode(job, position);
        if (HasKeptNeighbour(job, node, h)) {
            job.m_pAverageVelocityU[node.Value()] = 0.0;
            job.m_pAverageVelocityV[node.Value()] = 0.0;
            job.m_pAverageVelocityW[node.Value()] = 0.0;
        } else {
            KeepNode(job, position);
        }
    }
}

}  // namespace qnl::frozen
