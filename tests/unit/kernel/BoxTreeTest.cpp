#include "kernel/boxes/BoxTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

using qnl::kernel::BoxTree;
using qnl::kernel::TreeBox;

class PlainBoxes {
public:
    void Add(int id, const TreeBox& box) { entries_.push_back({box, id}); }
    std::vector<int> Find(const TreeBox& query) const {
        std::vector<int> ids;
        for (const BoxTree::Entry& entry : entries_) {
            bool apart = false;
            for (std::size_t a = 0; a < 3; ++a) {
                const bool meets = entry.box.low[a] <= query.high[a] && query.low[a] <= entry.box.high[a];
                apart = apart || !meets;
            }
            if (!apart) {
                ids.push_back(entry.id);
            }
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    }
    const std::vector<BoxTree::Entry>& Entries() const { return entries_; }

private:
    std::vector<BoxTree::Entry> entries_;
};

class Random {
public:
    explicit Random(std::uint32_t seed) : generator_(seed) {}
    double Below(double limit) { return limit * static_cast<double>(generator_()) / 4294967296.0; }
    // On a coarse grid, so that many sides coincide.
    TreeBox NextBox(double range, double size) {
        TreeBox box{};
        for (std::size_t a = 0; a < 3; ++a) {
            box.low[a] = std::floor(Below(range) * 4.0) / 4.0;
            box.high[a] = box.low[a] + std::floor(Below(size) * 4.0) / 4.0;
        }
        return box;
    }

private:
    std::mt19937 generator_;
};

TEST(BoxTree, AgreesWithTheListWhileItGrows) {
    Random random(11);
    BoxTree tree;
    PlainBoxes plain;
    std::vector<int> found;
    std::size_t total = 0;
    for (int i = 0; i < 3000; ++i) {
        const TreeBox box = random.NextBox(40.0, i % 100 == 0 ? 40.0 : 2.0);
        const int id = (i * 7919) % 3001;
        tree.Add(id, box);
        plain.Add(id, box);
        const TreeBox query = random.NextBox(40.0, 4.0);
        tree.Find(query, found);
        ASSERT_EQ(found, plain.Find(query)) << i;
        total += found.size();
    }
    EXPECT_GT(total, 3000u);
}

TEST(BoxTree, AgreesWithTheListAfterBulkAndSingleAdds) {
    Random random(12);
    PlainBoxes plain;
    for (int id = 1; id <= 20000; ++id) {
        plain.Add(id, random.NextBox(60.0, 2.0));
    }
    BoxTree tree;
    tree.Add(1, plain.Entries()[0].box);
    tree.AddAll({plain.Entries().begin() + 1, plain.Entries().begin() + 15000});
    for (std::size_t i = 15000; i < plain.Entries().size(); ++i) {
        tree.Add(plain.Entries()[i].id, plain.Entries()[i].box);
    }
    std::vector<int> found;
    for (int i = 0; i < 300; ++i) {
        const TreeBox query = random.NextBox(60.0, i % 10 == 0 ? 60.0 : 1.0);
        tree.Find(query, found);
        ASSERT_EQ(found, plain.Find(query)) << i;
    }
}

TEST(BoxTree, IsClosedOnBothSides) {
    BoxTree tree;
    tree.Add(5, {{0, 0, 0}, {1, 1, 1}});
    std::vector<int> found;
    tree.Find({{1, 1, 1}, {2, 2, 2}}, found);
    EXPECT_EQ(found, std::vector<int>{5});
    tree.Find({{std::nextafter(1.0, 2.0), 1, 1}, {2, 2, 2}}, found);
    EXPECT_TRUE(found.empty());
    tree.Find({{0.5, 0.5, -1}, {0.5, 0.5, 0}}, found);
    EXPECT_EQ(found, std::vector<int>{5});
}

TEST(BoxTree, NotANumberOverlapsNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    BoxTree tree;
    for (int id = 1; id <= 100; ++id) {
        tree.Add(id, {{0, 0, 0}, {1, id % 2 == 0 ? nan : 1.0, 1}});
    }
    tree.AddAll({{{{nan, 0, 0}, {1, 1, 1}}, 200}, {{{-infinity, -1, -1}, {infinity, 1, 1}}, 201}});
    std::vector<int> found;
    tree.Find({{-1, -1, -1}, {2, 2, 2}}, found);
    EXPECT_EQ(found.size(), 51u);
    EXPECT_EQ(found.front(), 1);
    EXPECT_EQ(found.back(), 201);
    tree.Find({{-1, nan, -1}, {2, 2, 2}}, found);
    EXPECT_TRUE(found.empty());
}

TEST(BoxTree, ABoxTurnedInsideOutIsEmpty) {
    BoxTree tree;
    tree.Add(1, {{0, 1, 0}, {1, 0, 1}});
    tree.AddAll({{{{0, 0, 1}, {1, 1, 0}}, 2}, {{{0, 0, 0}, {1, 1, 1}}, 3}});
    std::vector<int> found;
    tree.Find({{-1, -1, -1}, {2, 2, 2}}, found);
    EXPECT_EQ(found, std::vector<int>{3});
    tree.Find({{-1, 2, -1}, {2, -1, 2}}, found);
    EXPECT_TRUE(found.empty());
}

TEST(BoxTree, TakesBoxesWithoutEnd) {
    const double infinity = std::numeric_limits<double>::infinity();
    BoxTree tree;
    for (int id = 1; id <= 100; ++id) {
        tree.Add(id, {{-infinity, id * 1.0, -1e300}, {infinity, id + 0.5, 1e300}});
    }
    std::vector<int> found;
    tree.Find({{7, 40.5, -infinity}, {8, 41, infinity}}, found);
    EXPECT_EQ(found, (std::vector<int>{40, 41}));
}

TEST(BoxTree, ClearEmptiesIt) {
    BoxTree tree;
    for (int id = 1; id <= 130; ++id) {
        tree.Add(id, {{0, 0, 0}, {1, 1, 1}});
    }
    tree.Clear();
    std::vector<int> found{1};
    tree.Find({{-1, -1, -1}, {2, 2, 2}}, found);
    EXPECT_TRUE(found.empty());
}

TEST(BoxTree, ManyEqualBoxesComeAscending) {
    BoxTree tree;
    std::vector<int> expected;
    for (int id = 1000; id > 0; --id) {
        tree.Add(id, {{2, 2, 2}, {2, 2, 2}});
        expected.insert(expected.begin(), id);
    }
    std::vector<int> found;
    tree.Find({{2, 2, 2}, {2, 2, 2}}, found);
    EXPECT_EQ(found, expected);
}

}  // namespace
