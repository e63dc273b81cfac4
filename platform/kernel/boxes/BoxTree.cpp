#include "kernel/boxes/BoxTree.h"

#include <algorithm>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <cstddef>
#include <utility>

namespace qnl::kernel {
namespace {

namespace bg = boost::geometry;
using Corner = bg::model::point<double, 3, bg::cs::cartesian>;
using Bounds = bg::model::box<Corner>;
using Stored = std::pair<Bounds, int>;

// False for bounds that are not numbers, too.
bool IsBox(const TreeBox& box) {
    return box.low[0] <= box.high[0] && box.low[1] <= box.high[1] && box.low[2] <= box.high[2];
}

// Volumes of boxes stay finite.
Corner CornerAt(const Point& place) {
    constexpr double kFar = 1e100;
    const auto near = [&](std::size_t a) { return std::clamp(place[a], -kFar, kFar); };
    return {near(0), near(1), near(2)};
}

Bounds BoundsOf(const TreeBox& box) {
    return {CornerAt(box.low), CornerAt(box.high)};
}

}  // namespace

struct BoxTree::Tree {
    bg::index::rtree<Stored, bg::index::quadratic<16>> boxes;
};

BoxTree::BoxTree() : tree_(std::make_unique<Tree>()) {}

BoxTree::~BoxTree() = default;

void BoxTree::Clear() {
    tree_->boxes.clear();
}

void BoxTree::Add(int id, const TreeBox& box) {
    if (IsBox(box)) {
        tree_->boxes.insert({BoundsOf(box), id});
    }
}

void BoxTree::AddAll(const std::vector<Entry>& entries) {
    std::vector<Stored> stored;
    stored.reserve(entries.size());
    for (const Entry& entry : entries) {
        if (IsBox(entry.box)) {
            stored.emplace_back(BoundsOf(entry.box), entry.id);
        }
    }
    if (tree_->boxes.empty()) {
        tree_->boxes = decltype(tree_->boxes)(stored);
    } else {
        tree_->boxes.insert(stored);
    }
}

void BoxTree::Find(const TreeBox& query, std::vector<int>& ids) const {
    ids.clear();
    if (!IsBox(query)) {
        return;
    }
    const auto take = [&ids](const Stored& stored) { ids.push_back(stored.second); };
    tree_->boxes.query(bg::index::intersects(BoundsOf(query)), boost::make_function_output_iterator(take));
    std::sort(ids.begin(), ids.end());
}

}  // namespace qnl::kernel
