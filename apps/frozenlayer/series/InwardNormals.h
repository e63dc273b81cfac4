#pragma once

#include <vector>

#include "base/Id.h"
#include "base/Vector3.h"
#include "context/FrozenLayerJob.h"

namespace qnl::series {

/// The surface normals along which the evaluation looks, turned inwards: smoothed in runs that smooth them.
/// Made anew from the mesh, as the job's own may have become sink vectors.
class InwardNormals {
public:
    explicit InwardNormals(const FrozenLayerJob& job);

    /// Of length 1, or 0 for a node without a normal.
    Vector3 Of(NodeId node) const {
        const auto n = static_cast<std::size_t>(node.Value());
        return {-x_[n], -y_[n], -z_[n]};
    }

private:
    std::vector<double> x_;  ///< outward, by node, 1-based
    std::vector<double> y_;
    std::vector<double> z_;
};

}  // namespace qnl::series
