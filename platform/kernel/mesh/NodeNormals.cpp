#include "kernel/mesh/NodeNormals.h"

#include <algorithm>
#include <cmath>

#include "base/Vector3.h"

namespace qnl::kernel {
namespace {

constexpr std::size_t kMostCorners = 4;
constexpr double kShortest = 1e-30;
constexpr double kSteps = 17179869184.0;  // 2^34

using FaceShares = std::array<Point, kMostCorners>;

Point CornerShare(const Point& corner, const Point& next, const Point& previous) {
    const Point e1 = Minus(next, corner);
    const Point e2 = Minus(previous, corner);
    const Point cross = Cross(e1, e2);
    const double length = Length(cross);
    if (length == 0.0) {
        return {0.0, 0.0, 0.0};
    }
    const double angle = std::atan2(length, Dot(e1, e2));
    return {angle * (cross[0] / length), angle * (cross[1] / length), angle * (cross[2] / length)};
}

FaceShares SharesOf(const std::vector<NodeRecord>& nodes, const SurfaceRecord& face) {
    FaceShares shares{};
    const int count = face.nNode;
    const auto point = [&](int corner) {
        const NodeRecord& node = nodes[static_cast<std::size_t>(face.nodes[1 + corner % count])];
        return Point{node.x, node.y, node.z};
    };
    for (int c = 0; c < count; ++c) {
        shares[static_cast<std::size_t>(c)] = CornerShare(point(c), point(c + 1), point(c + count - 1));
    }
    return shares;
}

void AddShares(const SurfaceRecord& face, const FaceShares& shares, std::vector<Point>& sums) {
    for (int c = 0; c < face.nNode; ++c) {
        Point& sum = sums[static_cast<std::size_t>(face.nodes[1 + c])];
        for (std::size_t a = 0; a < 3; ++a) {
            sum[a] += shares[static_cast<std::size_t>(c)][a];
        }
    }
}

void NormaliseAndRound(Point& sum) {
    const double length = Length(sum);
    for (double& component : sum) {
        component = length < kShortest ? 0.0 : std::nearbyint(component / length * kSteps) / kSteps;
    }
}

}  // namespace

std::vector<Point> NodeNormals(const std::vector<NodeRecord>& nodes,
                               const std::vector<SurfaceRecord>& faces) {
    constexpr std::size_t kBlock = std::size_t{1} << 15;
    std::vector<Point> sums(nodes.size(), Point{0.0, 0.0, 0.0});
    std::vector<FaceShares> shares(std::min(kBlock, faces.size()));
    for (std::size_t begin = 1; begin < faces.size(); begin += kBlock) {
        const std::int64_t count = static_cast<std::int64_t>(std::min(kBlock, faces.size() - begin));
#pragma omp parallel for schedule(static)
        for (std::int64_t i = 0; i < count; ++i) {
            const std::size_t index = static_cast<std::size_t>(i);
            shares[index] = SharesOf(nodes, faces[begin + index]);
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            AddShares(faces[begin + i], shares[i], sums);
        }
    }
    std::for_each(sums.begin(), sums.end(), NormaliseAndRound);
    return sums;
}

}  // namespace qnl::kernel
