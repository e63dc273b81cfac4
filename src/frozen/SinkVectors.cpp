#include "frozen/SinkVectors.h"

#include <cmath>

namespace qnl::frozen {

void SubtractSinkReference(FrozenLayerJob& job) {
    double* total = job.m_pSinkMarkTotal.get();
    const double* reference = job.m_pSinkMarkWork.get();
    for (int v = 1; v <= job.m_nNodes; ++v) {
        const double depth = total[v] - reference[v];
        total[v] = depth < 0.0 ? 0.0 : depth;
    }
}

void TurnNormalsIntoSinkVectors(FrozenLayerJob& job) {
    constexpr double kShortestNormal = 1e-30;
    for (int v = 1; v <= job.m_nNodes; ++v) {
        double& x = job.m_pNormalX[v];
        double& y = job.m_pNormalY[v];
        double& z = job.m_pNormalZ[v];
        const double norm = std::sqrt(x * x + y * y + z * z);
        const double length = norm < kShortestNormal ? kShortestNormal : norm;
        const double depth = job.m_pSinkMarkTotal[v] < 0.0 ? 0.0 : job.m_pSinkMarkTotal[v];
        x = -depth * (x / length);
        y = -depth * (y / length);
        z = -depth * (z / length);
    }
}

}  // namespace qnl::frozen
