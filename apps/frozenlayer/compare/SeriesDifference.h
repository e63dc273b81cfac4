#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "compare/ComparedSeries.h"
#include "compare/DifferenceStatistics.h"

namespace qnl::compare {

/// An item that both results have at one output time; the entries of its statistics are surface nodes.
struct ItemDifference {
    int id = 0;
    std::string name;  ///< as people say it
    std::string unit;  ///< as people write it, "" for none
    DifferenceStatistics values;
};

/// Two results of one output time each. What only one of them has is named by its label.
struct TimeDifference {
    Both<std::size_t> times{};  ///< numbers of the time in both series, from 0
    std::size_t nodes = 0;      ///< with a result in both
    Both<std::vector<int>> nodesOfOne;
    Both<std::vector<std::string>> itemsOfOne;
    std::vector<ItemDifference> items;  ///< of both, ascending by id
};

struct SeriesDifference {
    std::vector<TimeDifference> times;          ///< of both, in the order of A
    Both<std::vector<std::size_t>> timesOfOne;  ///< numbers of the times that only one of them has, from 0

    /// Nothing stands in one of them only, and all values are the same to the bit.
    bool IsEqual() const { return HasSameBits() && !IsOneSided(); }
    /// In all that both of them have.
    bool HasSameBits() const;
    /// An output time, a node or an item stands in one of them only.
    bool IsOneSided() const;
    /// Nothing stands in one of them only, also no finite value, and no difference is larger.
    bool IsWithin(double tolerance) const;
};

/// The item of B that belongs to one of A, or the reverse: of the same number and meaning, with values at
/// that time; null without one.
const series::ItemOverTime* FindCounterpart(const series::ItemOverTime& item,
                                            const series::SurfaceResults& others, std::size_t time);

/// Compares results on one surface, time by time, item by item, at the nodes that both name. Raises
/// InputProblem when they have no output time in common.
SeriesDifference CompareSeries(const Both<ComparedSeries>& sides);

}  // namespace qnl::compare
