#include "frozen/SinkVectors.h"

#include <algorithm>

#include "base/Vector3.h"

namespace qnl::frozen {

void SubtractSinkReference(FrozenLayerJob& job) {
    double* total = job.m_pSinkMarkTotal.get();
    const double* reference = job.m_pSinkMarkWork.get();
    for (int v = 1; v <= job.m_nNodes; ++v) {
        total[v] = std::max(total[v] - reference[v], 0.0);
    }
}

void TurnNormalsIntoSinkVectors(FrozenLayerJob& job) {
    constexpr double kShortestNormal = 1e-30;
    for (int v = 1; v <= job.m_nNodes; ++v) {
        double& x = job.m_pNormalX[v];
        double& y = job.m_pNormalY[v];
        double& z = job.m_pNormalZ[v];
        const double length = std::max(Length(Vector3{x, y, z}), kShortestNormal);
        const double depth = std::max(job.m_pSinkMarkTotal[v], 0.0);
        x = -depth * (x / length);
        y = -depth * (y / length);
        z = -depth * (z / length);
    }
}

}  // namespace qnl::frozen
