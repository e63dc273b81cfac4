#pragma once

#include <memory>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// Axis-parallel box, closed on all sides.
struct TreeBox {
    Point low;
    Point high;
};

/// Boxes with ids that can be added at any time and asked for by overlap: an R-tree (Guttman 1984) of
/// Boost.Geometry. A box with a bound that is not a number, or with a low bound above the high one, is empty
/// and overlaps nothing. Bounds beyond 1e100 mm count as 1e100 mm. Queries change nothing, so any number of
/// threads may ask at once, as long as none adds.
class BoxTree {
public:
    BoxTree();
    ~BoxTree();
    BoxTree(const BoxTree&) = delete;
    BoxTree& operator=(const BoxTree&) = delete;

    void Clear();
    void Add(int id, const TreeBox& box);

    struct Entry {
        TreeBox box;
        int id;
    };
    /// Takes many boxes at once, faster when the tree is empty.
    void AddAll(const std::vector<Entry>& entries);

    /// Replaces `ids` by the ids of the boxes that overlap the query box, ascending; an id stands once for
    /// each such box stored under it.
    void Find(const TreeBox& query, std::vector<int>& ids) const;

private:
    struct Tree;
    std::unique_ptr<Tree> tree_;
};

}  // namespace qnl::kernel
