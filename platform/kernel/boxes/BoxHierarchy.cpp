#include "kernel/boxes/BoxHierarchy.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qnl::kernel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

constexpr float kFar = std::numeric_limits<float>::max();

float Narrowed(double value) {
    return static_cast<float>(std::clamp(value, -static_cast<double>(kFar), static_cast<double>(kFar)));
}

unsigned Bit(bool condition) {
    return condition ? 1U : 0U;
}

// Holds nothing, in finite numbers so that tests give no NaN.
template <class Node>
Node EmptyNode() {
    Node node;
    for (std::size_t row = 0; row < node.size(); ++row) {
        node[row].fill(row < 3 ? kFar : -kFar);
    }
    return node;
}

template <std::size_t Width>
unsigned Packed(const std::array<unsigned, Width>& hit) {
    unsigned packed = 0;
    for (std::size_t i = 0; i < Width; ++i) {
        packed |= hit[i] << i;
    }
    return packed;
}

}  // namespace

Box Box::Nothing() {
    return {{kInfinity, kInfinity, kInfinity}, {-kInfinity, -kInfinity, -kInfinity}};
}

Box Box::Everything() {
    return {{-kInfinity, -kInfinity, -kInfinity}, {kInfinity, kInfinity, kInfinity}};
}

void Box::Extend(const Point& point) {
    for (std::size_t a = 0; a < 3; ++a) {
        low[a] = std::min(low[a], point[a]);
        high[a] = std::max(high[a], point[a]);
    }
}

void Box::Grow(double margin) {
    for (std::size_t a = 0; a < 3; ++a) {
        low[a] -= margin;
        high[a] += margin;
    }
}

bool Box::Contains(const Point& point) const {
    return point[0] >= low[0] && point[0] <= high[0] && point[1] >= low[1] && point[1] <= high[1] &&
           point[2] >= low[2] && point[2] <= high[2];
}

Segment::Segment(const Point& lineOrigin, const Point& lineDirection, double start, double end)
    : origin(lineOrigin), inverse{}, from(start), to(end) {
    constexpr double kSmallest = 1e-20;
    for (std::size_t a = 0; a < 3; ++a) {
        const double component = lineDirection[a];
        inverse[a] = 1.0 / (std::fabs(component) < kSmallest ? kSmallest : component);
    }
}

BoxHierarchy::BoxHierarchy(const std::vector<Box>& boxes) : count_(boxes.size()) {
    ChooseMiddle(boxes);
    FillLowest(boxes);
    while (levels_.back().size() > 1) {
        const std::vector<Node>& below = levels_.back();
        std::vector<Node> level((below.size() + kWidth - 1) / kWidth, EmptyNode<Node>());
        for (std::size_t i = 0; i < below.size(); ++i) {
            Node& node = level[i / kWidth];
            for (std::size_t a = 0; a < 3; ++a) {
                node[a][i % kWidth] = *std::min_element(below[i][a].begin(), below[i][a].end());
                node[a + 3][i % kWidth] = *std::max_element(below[i][a + 3].begin(), below[i][a + 3].end());
            }
        }
        levels_.push_back(std::move(level));
    }
}

// Single precision rounds a coordinate by 6e-8 of the extent and a crossing by a few times that.
void BoxHierarchy::ChooseMiddle(const std::vector<Box>& boxes) {
    Box all = Box::Nothing();
    for (const Box& box : boxes) {
        if (std::isfinite(box.low[0]) && std::isfinite(box.high[0])) {
            all.Extend(box.low);
            all.Extend(box.high);
        }
    }
    double extent = 0.0;
    for (std::size_t a = 0; a < 3 && all.low[0] <= all.high[0]; ++a) {
        middle_[a] = 0.5 * all.low[a] + 0.5 * all.high[a];
        extent += all.high[a] - all.low[a];
    }
    slack_ = 4e-6 * extent;
}

void BoxHierarchy::FillLowest(const std::vector<Box>& boxes) {
    levels_.emplace_back((boxes.size() + kWidth - 1) / kWidth, EmptyNode<Node>());
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        Node& node = levels_[0][i / kWidth];
        for (std::size_t a = 0; a < 3; ++a) {
            node[a][i % kWidth] = Narrowed(boxes[i].low[a] - middle_[a] - slack_);
            node[a + 3][i % kWidth] = Narrowed(boxes[i].high[a] - middle_[a] + slack_);
        }
    }
}

BoxHierarchy::SegmentTest::SegmentTest(const Segment& segment, const Point& middle)
    : origin_{}, inverse_{}, from_(Narrowed(segment.from)), to_(Narrowed(segment.to)), nearRow_{}, farRow_{} {
    for (std::size_t a = 0; a < 3; ++a) {
        origin_[a] = Narrowed(segment.origin[a] - middle[a]);
        inverse_[a] = Narrowed(segment.inverse[a]);
        nearRow_[a] = segment.inverse[a] > 0.0 ? a : a + 3;
        farRow_[a] = segment.inverse[a] > 0.0 ? a + 3 : a;
    }
}

// Written out by axis in one loop without branches, which compilers turn into vector instructions.
unsigned BoxHierarchy::SegmentTest::Hits(const Node& node) const {
    const float* nearX = node[nearRow_[0]].data();
    const float* nearY = node[nearRow_[1]].data();
    const float* nearZ = node[nearRow_[2]].data();
    const float* farX = node[farRow_[0]].data();
    const float* farY = node[farRow_[1]].data();
    const float* farZ = node[farRow_[2]].data();
    const auto [originX, originY, originZ] = origin_;
    const auto [inverseX, inverseY, inverseZ] = inverse_;
    const float from = from_;
    const float to = to_;
    std::array<unsigned, kWidth> hit;
    for (std::size_t i = 0; i < kWidth; ++i) {
        const float inX = (nearX[i] - originX) * inverseX;
        const float inY = (nearY[i] - originY) * inverseY;
        const float inZ = (nearZ[i] - originZ) * inverseZ;
        const float outX = (farX[i] - originX) * inverseX;
        const float outY = (farY[i] - originY) * inverseY;
        const float outZ = (farZ[i] - originZ) * inverseZ;
        float enter = inX > inY ? inX : inY;
        enter = enter > inZ ? enter : inZ;
        enter = enter > from ? enter : from;
        float leave = outX < outY ? outX : outY;
        leave = leave < outZ ? leave : outZ;
        leave = leave < to ? leave : to;
        hit[i] = Bit(enter <= leave);
    }
    return Packed(hit);
}

BoxHierarchy::OverlapTest::OverlapTest(const Box& box, const Point& middle) : low_{}, high_{} {
    for (std::size_t a = 0; a < 3; ++a) {
        low_[a] = Narrowed(box.low[a] - middle[a]);
        high_[a] = Narrowed(box.high[a] - middle[a]);
    }
}

unsigned BoxHierarchy::OverlapTest::Hits(const Node& node) const {
    std::array<unsigned, kWidth> hit;
    for (std::size_t i = 0; i < kWidth; ++i) {
        const unsigned x = Bit(node[0][i] <= high_[0]) & Bit(node[3][i] >= low_[0]);
        const unsigned y = Bit(node[1][i] <= high_[1]) & Bit(node[4][i] >= low_[1]);
        const unsigned z = Bit(node[2][i] <= high_[2]) & Bit(node[5][i] >= low_[2]);
        hit[i] = x & y & z;
    }
    return Packed(hit);
}

}  // namespace qnl::kernel
