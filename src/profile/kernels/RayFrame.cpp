#include "profile/kernels/RayFrame.h"

#include <cmath>

namespace qnl::profile {

namespace {

RayFrame FrameOfRows(const Vector3& e1, const Vector3& e2, const Vector3& a) {
    RayFrame frame{};
    frame[1] = {0.0, e1.x, e1.y, e1.z};
    frame[2] = {0.0, e2.x, e2.y, e2.z};
    frame[3] = {0.0, a.x, a.y, a.z};
    return frame;
}

}  // namespace

}  // namespace qnl::profile

int BuildRayFrame(qnl::profile::RayFrame& frame, const qnl::Vector3& d) {
    constexpr double kNearlyAlongZ = 1e-5;
    constexpr double kDownward = 0.01;
    const double squared = d.y * d.y + d.x * d.x;
    if (squared < kNearlyAlongZ) {
        const double sign = std::abs(d.z + 1.0) <= kDownward ? -1.0 : 1.0;
        frame = qnl::profile::FrameOfRows({sign, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, sign});
        return 0;
    }
    const double length = std::sqrt(squared);
    const qnl::Vector3 e1{-d.y / length, d.x / length, 0.0};
    frame = qnl::profile::FrameOfRows(e1, qnl::Cross(d, e1), d);
    return 1;
}
