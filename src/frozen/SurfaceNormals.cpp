#include "frozen/SurfaceNormals.h"

namespace qnl::frozen {

int ComputeSurfaceNormals(FrozenLayerJob& job) {
    for (OwnedArray<double>* normal : {&job.m_pNormalX, &job.m_pNormalY, &job.m_pNormalZ}) {
        *normal = NewFromOne<double>(job.m_nNodes);
    }
    job.m_pOptKer->ComputeNodeSurfaceNormal(job.m_pNormalX.get(), job.m_pNormalY.get(), job.m_pNormalZ.get());
    return 1;
}

void SmoothSurfaceNormals(CQNLOptKer& kernel, double* nx, double* ny, double* nz) {
    constexpr int kSweeps = 6;
    for (double* normal : {nx, ny, nz}) {
        kernel.SmoothSurfaceNodeValue(normal, kSweeps);
    }
}

}  // namespace qnl::frozen
