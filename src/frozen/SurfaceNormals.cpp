#include "frozen/SurfaceNormals.h"

#include <algorithm>

namespace qnl::frozen {

int ComputeSurfaceNormals(FrozenLayerJob& job) {
    const std::size_t entries = static_cast<std::size_t>(job.m_nNodes) + 1;
    for (OwnedArray<double>* normal : {&job.m_pNormalX, &job.m_pNormalY, &job.m_pNormalZ}) {
        if (!*normal) {
            *normal = std::make_unique<double[]>(entries);
        }
        std::fill_n(normal->get(), entries, 0.0);
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
