#include "compare/SeriesDifference.h"

#include <algorithm>
#include <cmath>

#include "compare/MatchedTimes.h"

namespace qnl::compare {

namespace {

/// The surface nodes with a result in both; the labels of others go where they belong.
std::vector<std::size_t> NodesOfBoth(const Both<ComparedSeries>& sides, TimeDifference& difference) {
    const std::vector<char>& inA = sides[0].results.hasResult[difference.times[0]];
    const std::vector<char>& inB = sides[1].results.hasResult[difference.times[1]];
    std::vector<std::size_t> nodes;
    for (std::size_t i = 0; i < inA.size(); ++i) {
        if (inA[i] != 0 && inB[i] != 0) {
            nodes.push_back(i);
        } else if (inA[i] != inB[i]) {
            difference.nodesOfOne[inA[i] != 0 ? 0 : 1].push_back(sides[0].surface.labels[i]);
        }
    }
    return nodes;
}

void CompareItems(const Both<ComparedSeries>& sides, const std::vector<std::size_t>& nodes,
                  TimeDifference& difference) {
    const auto [timeOfA, timeOfB] = difference.times;
    for (const series::ItemOverTime& a : sides[0].results.items) {
        const series::ItemOverTime* b = FindCounterpart(a, sides[1].results, timeOfB);
        if (b != nullptr && !a.values[timeOfA].empty()) {
            difference.items.push_back(
                {a.id, a.name, a.unit, SummariseDifferences(a.values[timeOfA], b->values[timeOfB], nodes)});
        }
    }
}

/// Items with values at the time of one side and none at that of the other.
std::vector<std::string> ItemsOfOne(const Both<ComparedSeries>& sides, const Both<std::size_t>& times,
                                    std::size_t side) {
    std::vector<std::string> names;
    const std::size_t other = 1 - side;
    for (const series::ItemOverTime& item : sides[side].results.items) {
        if (!item.values[times[side]].empty() &&
            FindCounterpart(item, sides[other].results, times[other]) == nullptr) {
            names.push_back(item.name);
        }
    }
    return names;
}

TimeDifference CompareTime(const Both<ComparedSeries>& sides, const Both<std::size_t>& times) {
    TimeDifference difference;
    difference.times = times;
    const std::vector<std::size_t> nodes = NodesOfBoth(sides, difference);
    difference.nodes = nodes.size();
    CompareItems(sides, nodes, difference);
    difference.itemsOfOne = {ItemsOfOne(sides, times, 0), ItemsOfOne(sides, times, 1)};
    return difference;
}

template <typename List>
bool HasAny(const Both<List>& ofOne) {
    return !ofOne[0].empty() || !ofOne[1].empty();
}

template <typename Test>
bool HoldsForItems(const std::vector<TimeDifference>& times, const Test& test) {
    return std::all_of(times.begin(), times.end(), [&](const TimeDifference& time) {
        return std::all_of(time.items.begin(), time.items.end(),
                           [&](const ItemDifference& item) { return test(item.values); });
    });
}

}  // namespace

bool SeriesDifference::HasSameBits() const {
    return HoldsForItems(times, [](const DifferenceStatistics& values) { return values.sameBits; });
}

bool SeriesDifference::IsOneSided() const {
    return HasAny(timesOfOne) || std::any_of(times.begin(), times.end(), [](const TimeDifference& time) {
               return HasAny(time.nodesOfOne) || HasAny(time.itemsOfOne);
           });
}

bool SeriesDifference::IsWithin(double tolerance) const {
    return !IsOneSided() && HoldsForItems(times, [&](const DifferenceStatistics& values) {
        return values.finiteInOne == 0 && (values.compared == 0 || std::fabs(values.largest) <= tolerance);
    });
}

const series::ItemOverTime* FindCounterpart(const series::ItemOverTime& item,
                                            const series::SurfaceResults& others, std::size_t time) {
    const auto found =
        std::find_if(others.items.begin(), others.items.end(), [&](const series::ItemOverTime& other) {
            return other.id == item.id && other.name == item.name && !other.values[time].empty();
        });
    return found == others.items.end() ? nullptr : &*found;
}

SeriesDifference CompareSeries(const Both<ComparedSeries>& sides) {
    const MatchedTimes matched = MatchTimes(sides[0].files, sides[1].files);
    if (matched.pairs.empty()) {
        throw project::InputProblem(
            "A and B have no output time in common; to compare two different times, name their result files, "
            "such as part1_001.fzr and part1_002.fzr");
    }
    SeriesDifference difference;
    for (const Both<std::size_t>& times : matched.pairs) {
        difference.times.push_back(CompareTime(sides, times));
    }
    difference.timesOfOne = matched.alone;
    return difference;
}

}  // namespace qnl::compare
