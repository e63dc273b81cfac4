#include "series/FreezingRegions.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace qnl::series {

namespace {

constexpr float kNever = std::numeric_limits<float>::infinity();
constexpr float kOutside = -std::numeric_limits<float>::infinity();

/// Time to freeze with an order for those that have none.
std::vector<float> FreezeKeys(const FreezeHistory& history) {
    std::vector<float> keys(history.status.size(), kOutside);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (history.status[i] != FreezeStatus::NoResult) {
            keys[i] = history.status[i] == FreezeStatus::NeverFrozen ? kNever : history.timeToFreeze[i];
        }
    }
    return keys;
}

/// Collects the connected nodes of one key from `start` on and marks them; gives whether a neighbour freezes
/// later.
bool CollectArea(const kernel::BoundaryGraph& graph, const std::vector<float>& keys, std::size_t start,
                 std::vector<char>& seen, std::vector<std::size_t>& area) {
    bool laterAround = false;
    area.assign(1, start);
    seen[start] = 1;
    for (std::size_t done = 0; done < area.size(); ++done) {
        const std::size_t node = area[done];
        for (const int* n = graph.NeighboursBegin(node); n != graph.NeighboursEnd(node); ++n) {
            const auto neighbour = static_cast<std::size_t>(*n);
            laterAround = laterAround || keys[neighbour] > keys[node];
            if (keys[neighbour] == keys[node] && seen[neighbour] == 0) {
                seen[neighbour] = 1;
                area.push_back(neighbour);
            }
        }
    }
    return laterAround;
}

FreezingRegion RegionOf(const std::vector<std::size_t>& area, const FreezeHistory& history) {
    const std::vector<double>& last = history.hottest.back();
    const std::size_t node = *std::min_element(area.begin(), area.end(), [&](std::size_t a, std::size_t b) {
        return last[a] != last[b] ? last[a] > last[b] : a < b;
    });
    return {static_cast<int>(node), history.status[node] == FreezeStatus::NeverFrozen,
            history.timeToFreeze[node], last[node]};
}

bool FreezesLater(const FreezingRegion& a, const FreezingRegion& b) {
    if (a.neverFrozen != b.neverFrozen) {
        return a.neverFrozen;
    }
    if (!a.neverFrozen && a.time != b.time) {
        return a.time > b.time;
    }
    return a.hottest != b.hottest ? a.hottest > b.hottest : a.node < b.node;
}

}  // namespace

FreezingRegions FindLastFreezing(const kernel::BoundaryGraph& graph, const FreezeHistory& history) {
    const std::vector<float> keys = FreezeKeys(history);
    std::vector<char> seen(keys.size(), 0);
    std::vector<FreezingRegion> found;
    std::vector<std::vector<std::size_t>> areas;
    std::vector<std::size_t> area;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (seen[i] == 0 && keys[i] != kOutside && !CollectArea(graph, keys, i, seen, area)) {
            found.push_back(RegionOf(area, history));
            areas.push_back(area);
        }
    }
    std::vector<std::size_t> order(found.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return FreezesLater(found[a], found[b]); });
    FreezingRegions result;
    result.rank.assign(keys.size(), 0);
    for (const std::size_t k : order) {
        result.regions.push_back(found[k]);
        for (const std::size_t node : areas[k]) {
            result.rank[node] = static_cast<int>(result.regions.size());
        }
    }
    return result;
}

}  // namespace qnl::series
