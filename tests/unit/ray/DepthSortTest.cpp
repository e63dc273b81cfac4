#include "kernel/rays/DepthSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace qnl {
namespace {

using Keys = std::vector<double>;
using Ids = std::vector<int>;

std::pair<Keys, Ids> Sorted(Keys keys, Ids ids, double epsilon) {
    keys.insert(keys.begin(), -99.0);
    ids.insert(ids.begin(), -99);
    kernel::SortByDepth(static_cast<int>(keys.size()) - 1, keys.data(), ids.data(), epsilon);
    EXPECT_EQ(keys[0], -99.0);
    EXPECT_EQ(ids[0], -99);
    return {Keys(keys.begin() + 1, keys.end()), Ids(ids.begin() + 1, ids.end())};
}

TEST(SortByDepth, SortsKeysAndCarriesIds) {
    const auto [keys, ids] = Sorted({3.0, -1.0, 2.0}, {30, 10, 20}, 0.1);
    EXPECT_EQ(keys, (Keys{-1.0, 2.0, 3.0}));
    EXPECT_EQ(ids, (Ids{10, 20, 30}));
}

TEST(SortByDepth, OrdersIdsWithinRunsOfCloseKeys) {
    const auto [keys, ids] = Sorted({1.0, 1.15, 1.1, 1.2, 2.0}, {9, 2, 7, 1, 3}, 0.0625);
    EXPECT_EQ(keys, (Keys{1.0, 1.1, 1.15, 1.2, 2.0}));
    EXPECT_EQ(ids, (Ids{9, 1, 2, 7, 3}));
}

TEST(SortByDepth, ADistanceOfExactlyEpsilonBelongsToTheRun) {
    EXPECT_EQ(Sorted({0.0, 0.5, 1.0}, {3, 2, 1}, 0.5).second, (Ids{1, 2, 3}));
    EXPECT_EQ(Sorted({0.0, 0.5, 1.0}, {3, 2, 1}, 0.49).second, (Ids{3, 2, 1}));
}

TEST(SortByDepth, LeavesEmptyAndSingleListsAlone) {
    EXPECT_EQ(Sorted({}, {}, 1.0).second, Ids{});
    EXPECT_EQ(Sorted({5.0}, {4}, 1.0).second, Ids{4});
    kernel::SortByDepth(-3, nullptr, nullptr, 1.0);
}

TEST(SortByDepth, PutsWhatIsNoNumberLast) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const std::size_t count : {3U, 40U}) {
        Keys keys(count, nan);
        Ids ids(count, 1);
        keys[count - 1] = 1.0;
        ids[count - 1] = 7;
        EXPECT_EQ(Sorted(keys, ids, 0.1).second.front(), 7);
    }
}

TEST(SortByDepth, AgreesWithAPlainSortOnLongAndShortLists) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        const std::size_t count = random() % 80;
        std::vector<std::pair<double, int>> pairs;
        Keys keys;
        Ids ids;
        for (std::size_t i = 0; i < count; ++i) {
            keys.push_back(static_cast<double>(random() % 50) + static_cast<double>(random() % 3) * 1e-9);
            ids.push_back(static_cast<int>(random() % 1000));
            pairs.emplace_back(keys.back(), ids.back());
        }
        std::stable_sort(pairs.begin(), pairs.end());
        for (std::size_t begin = 0; begin < count;) {
            std::size_t end = begin + 1;
            while (end < count && pairs[end].first - pairs[end - 1].first <= 1e-8) {
                ++end;
            }
            Ids run;
            for (std::size_t i = begin; i < end; ++i) {
                run.push_back(pairs[i].second);
            }
            std::sort(run.begin(), run.end());
            for (std::size_t i = begin; i < end; ++i) {
                pairs[i].second = run[i - begin];
            }
            begin = end;
        }
        const auto [sortedKeys, sortedIds] = Sorted(keys, ids, 1e-8);
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_EQ(sortedKeys[i], pairs[i].first);
            EXPECT_EQ(sortedIds[i], pairs[i].second);
        }
    }
}

}  // namespace
}  // namespace qnl
