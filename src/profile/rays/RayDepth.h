#pragma once

#include "base/Vector3.h"
#include "profile/kernels/RayFrame.h"
#include "profile/rays/PassElementMesh.h"

namespace qnl::profile {

/// Measures how deep pass elements stand along one ray.
class RayDepth {
public:
    /// `direction` is the unit direction of the ray.
    RayDepth(const PassElementMesh& mesh, const Vector3& direction) : mesh_(mesh) {
        RayFrame frame;
        BuildRayFrame(frame, direction);
        axis_ = DepthAxis(frame);
    }

    /// Place of the element's reference point along the depth axis, mm, counted from the origin of the mesh.
    double operator()(PassElement element) const { return Dot(axis_, ReferencePoint(mesh_[element])); }

private:
    PassElementMesh mesh_;
    Vector3 axis_{};
};

}  // namespace qnl::profile
