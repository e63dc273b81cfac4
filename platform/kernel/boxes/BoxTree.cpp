#include "kernel/boxes/BoxTree.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace qnl::kernel {
namespace {

constexpr std::size_t kLeaf = 8;
constexpr std::size_t kMostWaiting = 64;

using Entries = std::vector<BoxTree::Entry>;

void Enclose(TreeBox& sum, const TreeBox& box) {
    for (std::size_t a = 0; a < 3; ++a) {
        sum.low[a] = std::min(sum.low[a], box.low[a]);
        sum.high[a] = std::max(sum.high[a], box.high[a]);
    }
}

// Place of a box along an axis, for ordering only; infinite boxes stand in the middle.
double Middle(const BoxTree::Entry& entry, std::size_t axis) {
    const double middle = entry.box.low[axis] / 2.0 + entry.box.high[axis] / 2.0;
    return std::isnan(middle) ? 0.0 : middle;
}

std::size_t WidestAxis(Entries::const_iterator begin, Entries::const_iterator end) {
    Point low{};
    Point high{};
    for (std::size_t a = 0; a < 3; ++a) {
        low[a] = high[a] = Middle(*begin, a);
    }
    for (auto entry = begin; entry != end; ++entry) {
        for (std::size_t a = 0; a < 3; ++a) {
            low[a] = std::min(low[a], Middle(*entry, a));
            high[a] = std::max(high[a], Middle(*entry, a));
        }
    }
    std::size_t widest = 0;
    for (std::size_t a = 1; a < 3; ++a) {
        widest = high[a] - low[a] > high[widest] - low[widest] ? a : widest;
    }
    return widest;
}

// Splits at the largest run of leaves that is a power of two and leaves something for the other side.
void Order(Entries::iterator begin, Entries::iterator end) {
    const std::size_t count = static_cast<std::size_t>(end - begin);
    if (count <= kLeaf) {
        return;
    }
    std::size_t left = kLeaf;
    while (left * 2 < count) {
        left *= 2;
    }
    const std::size_t axis = WidestAxis(begin, end);
    const auto middle = begin + static_cast<std::ptrdiff_t>(left);
    std::nth_element(begin, middle, end, [axis](const BoxTree::Entry& a, const BoxTree::Entry& b) {
        return Middle(a, axis) < Middle(b, axis);
    });
    Order(begin, middle);
    Order(middle, end);
}

std::vector<TreeBox> LeafBounds(const Entries& entries) {
    std::vector<TreeBox> bounds;
    bounds.reserve((entries.size() + kLeaf - 1) / kLeaf);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % kLeaf == 0) {
            bounds.push_back(entries[i].box);
        } else {
            Enclose(bounds.back(), entries[i].box);
        }
    }
    return bounds;
}

std::vector<TreeBox> BoundsAbove(const std::vector<TreeBox>& below) {
    std::vector<TreeBox> bounds;
    bounds.reserve((below.size() + 1) / 2);
    for (std::size_t i = 0; i < below.size(); ++i) {
        if (i % 2 == 0) {
            bounds.push_back(below[i]);
        } else {
            Enclose(bounds.back(), below[i]);
        }
    }
    return bounds;
}

bool HasNumbers(const TreeBox& box) {
    const auto isNumber = [](double bound) { return !std::isnan(bound); };
    return std::all_of(box.low.begin(), box.low.end(), isNumber) &&
           std::all_of(box.high.begin(), box.high.end(), isNumber);
}

}  // namespace

bool BoxesOverlap(const TreeBox& a, const TreeBox& b) {
    return a.low[0] <= b.high[0] && b.low[0] <= a.high[0] && a.low[1] <= b.high[1] && b.low[1] <= a.high[1] &&
           a.low[2] <= b.high[2] && b.low[2] <= a.high[2];
}

BoxTree::StaticTree::StaticTree(std::vector<Entry> content) : entries(std::move(content)) {
    Order(entries.begin(), entries.end());
    bounds.push_back(LeafBounds(entries));
    while (bounds.back().size() > 1) {
        bounds.push_back(BoundsAbove(bounds.back()));
    }
}

void BoxTree::StaticTree::Find(const TreeBox& query, std::size_t level, std::size_t node,
                               std::vector<int>& ids) const {
    if (node >= bounds[level].size() || !BoxesOverlap(bounds[level][node], query)) {
        return;
    }
    if (level > 0) {
        Find(query, level - 1, 2 * node, ids);
        Find(query, level - 1, 2 * node + 1, ids);
        return;
    }
    const std::size_t end = std::min((node + 1) * kLeaf, entries.size());
    for (std::size_t i = node * kLeaf; i < end; ++i) {
        if (BoxesOverlap(entries[i].box, query)) {
            ids.push_back(entries[i].id);
        }
    }
}

void BoxTree::Clear() {
    waiting_.clear();
    trees_.clear();
}

void BoxTree::Add(int id, const TreeBox& box) {
    if (!HasNumbers(box)) {
        return;
    }
    waiting_.push_back({box, id});
    if (waiting_.size() == kMostWaiting) {
        AddAll(std::exchange(waiting_, {}));
    }
}

void BoxTree::AddAll(std::vector<Entry> entries) {
    const auto useless = [](const Entry& entry) { return !HasNumbers(entry.box); };
    entries.erase(std::remove_if(entries.begin(), entries.end(), useless), entries.end());
    while (!trees_.empty() && trees_.back().entries.size() <= entries.size()) {
        const std::vector<Entry>& smaller = trees_.back().entries;
        entries.insert(entries.end(), smaller.begin(), smaller.end());
        trees_.pop_back();
    }
    if (!entries.empty()) {
        trees_.emplace_back(std::move(entries));
    }
}

void BoxTree::Find(const TreeBox& query, std::vector<int>& ids) const {
    ids.clear();
    for (const Entry& entry : waiting_) {
        if (BoxesOverlap(entry.box, query)) {
            ids.push_back(entry.id);
        }
    }
    for (const StaticTree& tree : trees_) {
        tree.Find(query, tree.bounds.size() - 1, 0, ids);
    }
    std::sort(ids.begin(), ids.end());
}

}  // namespace qnl::kernel
