#include "kernel/box_hierarchy.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qnl {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

float RoundedDown(double value) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    if (!(std::fabs(value) <= static_cast<double>(kLargest))) {
        return value > 0.0 ? kLargest : -std::numeric_limits<float>::infinity();
    }
    const float rounded = static_cast<float>(value);
    return static_cast<double>(rounded) > value
               ? std::nextafter(rounded, -std::numeric_limits<float>::infinity())
               : rounded;
}

float RoundedUp(double value) {
    return -RoundedDown(-value);
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

Segment::Segment(const Point& lineOrigin, const Point& lineDirection, double start, double end)
    : origin(lineOrigin), inverse{}, from(start), to(end) {
    constexpr double kSmallest = 1e-20;
    for (std::size_t a = 0; a < 3; ++a) {
        const double component = lineDirection[a];
        inverse[a] = 1.0 / (std::fabs(component) < kSmallest ? kSmallest : component);
    }
}

BoxHierarchy::BoxHierarchy(const std::vector<Box>& boxes) : count_(boxes.size()) {
    constexpr float kFar = std::numeric_limits<float>::infinity();
    constexpr Node kEmpty = [] {
        Node node{};
        for (std::size_t row = 0; row < 6; ++row) {
            for (float& bound : node[row]) {
                bound = row < 3 ? kFar : -kFar;
            }
        }
        return node;
    }();
    levels_.emplace_back((boxes.size() + kWidth - 1) / kWidth, kEmpty);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        Node& node = levels_[0][i / kWidth];
        for (std::size_t a = 0; a < 3; ++a) {
            node[a][i % kWidth] = RoundedDown(boxes[i].low[a]);
            node[a + 3][i % kWidth] = RoundedUp(boxes[i].high[a]);
        }
    }
    while (levels_.back().size() > 1) {
        const std::vector<Node>& below = levels_.back();
        std::vector<Node> level((below.size() + kWidth - 1) / kWidth, kEmpty);
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

BoxHierarchy::SegmentTest::SegmentTest(const Segment& s) : segment(s), nearRow{}, farRow{} {
    for (std::size_t a = 0; a < 3; ++a) {
        nearRow[a] = s.inverse[a] > 0.0 ? a : a + 3;
        farRow[a] = s.inverse[a] > 0.0 ? a + 3 : a;
    }
}

unsigned BoxHierarchy::SegmentTest::Hits(const Node& node) const {
    std::array<double, kWidth> enter;
    std::array<double, kWidth> leave;
    enter.fill(segment.from);
    leave.fill(segment.to);
    for (std::size_t a = 0; a < 3; ++a) {
        const auto& nearBounds = node[nearRow[a]];
        const auto& farBounds = node[farRow[a]];
        const double origin = segment.origin[a];
        const double inverse = segment.inverse[a];
        for (std::size_t i = 0; i < kWidth; ++i) {
            const double in = (static_cast<double>(nearBounds[i]) - origin) * inverse;
            const double out = (static_cast<double>(farBounds[i]) - origin) * inverse;
            enter[i] = in > enter[i] ? in : enter[i];
            leave[i] = out < leave[i] ? out : leave[i];
        }
    }
    unsigned hits = 0;
    for (std::size_t i = 0; i < kWidth; ++i) {
        hits |= static_cast<unsigned>(enter[i] <= leave[i]) << i;
    }
    return hits;
}

unsigned BoxHierarchy::OverlapTest::Hits(const Node& node) const {
    unsigned hits = 0;
    for (std::size_t i = 0; i < kWidth; ++i) {
        bool overlaps = true;
        for (std::size_t a = 0; a < 3; ++a) {
            overlaps = overlaps && static_cast<double>(node[a][i]) <= box.high[a] &&
                       static_cast<double>(node[a + 3][i]) >= box.low[a];
        }
        hits |= static_cast<unsigned>(overlaps) << i;
    }
    return hits;
}

}  // namespace qnl
