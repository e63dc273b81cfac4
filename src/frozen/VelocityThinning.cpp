#include "frozen/VelocityThinning.h"

#include <algorithm>

#include "context/RunConditions.h"
#include "mesh/DataExtension.h"

namespace qnl::frozen {

namespace {

constexpr double kStoredHalfSize = 0.0001;  // mm
constexpr double kOppositeNormals = -1e-30;

double LongestBoxSide(const FrozenLayerJob& job) {
    return std::max({job.m_dBoxMax[0] - job.m_dBoxMin[0], job.m_dBoxMax[1] - job.m_dBoxMin[1],
                     job.m_dBoxMax[2] - job.m_dBoxMin[2]});
}

double NormalProduct(const FrozenLayerJob& job, int v, int w) {
    return job.m_pNormalX[v] * job.m_pNormalX[w] + job.m_pNormalY[v] * job.m_pNormalY[w] +
           job.m_pNormalZ[v] * job.m_pNormalZ[w];
}

bool HasKeptNeighbour(FrozenLayerJob& job, int node, double h) {
    const NodeRecord& p = job.p_Node[node];
    int count = 0;
    const int* found =
        job.m_pSurfTree->SearchNearBlockID(p.x - h, p.y - h, p.z - h, p.x + h, p.y + h, p.z + h, count, 0);
    return std::any_of(found, found + count, [&job, node](int position) {
        return NormalProduct(job, node, job.m_pSurfNodeList[position]) > kOppositeNormals;
    });
}

void KeepNode(FrozenLayerJob& job, int position) {
    const NodeRecord& p = job.p_Node[job.m_pSurfNodeList[position]];
    constexpr double d = kStoredHalfSize;
    job.m_pSurfTree->AddSurfaceToADTree(position, p.x - d, p.y - d, p.z - d, p.x + d, p.y + d, p.z + d);
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
    for (int i = 1; i <= job.m_nSurfaceNodes; ++i) {
        const int node = job.m_pSurfNodeList[i];
        if (HasKeptNeighbour(job, node, h)) {
            job.m_pAverageVelocityU[node] = 0.0;
            job.m_pAverageVelocityV[node] = 0.0;
            job.m_pAverageVelocityW[node] = 0.0;
        } else {
            KeepNode(job, i);
        }
    }
}

}  // namespace qnl::frozen
