#include "series/InwardNormals.h"

#include "context/RunConditions.h"
#include "frozen/SurfaceNormals.h"

namespace qnl::series {

InwardNormals::InwardNormals(const FrozenLayerJob& job)
    : x_(static_cast<std::size_t>(job.m_nNodes) + 1), y_(x_.size()), z_(x_.size()) {
    job.m_pOptKer->ComputeNodeSurfaceNormal(x_.data(), y_.data(), z_.data());
    if (SmoothsNormals(job)) {
        frozen::SmoothSurfaceNormals(*job.m_pOptKer, x_.data(), y_.data(), z_.data());
    }
}

}  // namespace qnl::series
