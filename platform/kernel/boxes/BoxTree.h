#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// Axis-parallel box, closed on all sides.
struct TreeBox {
    Point low;
    Point high;
};

/// Overlap of two closed boxes; false when a bound is not a number.
bool BoxesOverlap(const TreeBox& a, const TreeBox& b);

/// Boxes with ids that can be added at any time and asked for by overlap.
///
/// The boxes are kept in static trees whose sizes double, plus a few that wait in a list: adding costs
/// O(log^2 n) on average, a query O(log^2 n) and what it gives. Queries change nothing, so any number of
/// threads may ask at once, as long as none adds.
class BoxTree {
public:
    void Clear();
    /// A box with a bound that is not a number overlaps nothing and is not kept.
    void Add(int id, const TreeBox& box);
    /// Takes over many boxes at once.
    struct Entry {
        TreeBox box;
        int id;
    };
    void AddAll(std::vector<Entry> entries);

    /// Replaces `ids` by the ids of the boxes that overlap the query box, ascending; an id stands once for
    /// each such box stored under it.
    void Find(const TreeBox& query, std::vector<int>& ids) const;

private:
    /// Entries in leaves of a fixed size, ordered so that each node of the binary tree over the leaves
    /// stands for a run of them: bounds[level][i] encloses the leaves i * 2^level to (i + 1) * 2^level - 1.
    struct StaticTree {
        explicit StaticTree(std::vector<Entry> content);
        void Find(const TreeBox& query, std::size_t level, std::size_t node, std::vector<int>& ids) const;
        std::vector<Entry> entries;
        std::vector<std::vector<TreeBox>> bounds;
    };

    std::vector<Entry> waiting_;
    std::vector<StaticTree> trees_;  ///< sizes descending
};

}  // namespace qnl::kernel
