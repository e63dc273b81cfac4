#pragma once

#include <vector>

#include "kernel/topology/BoundaryGraph.h"
#include "series/FreezeHistory.h"

namespace qnl::series {

/// A connected area of the surface that freezes later than everything around it.
struct FreezingRegion {
    int node;          ///< surface node of the area that stays hottest
    bool neverFrozen;  ///< within the output times
    float time;        ///< time to freeze; not a number when it never does
    double hottest;    ///< highest temperature along that node's ray at the last output time, degC
};

/// The areas, last to freeze first: never frozen ones before all others, of equal ones the hotter first.
struct FreezingRegions {
    std::vector<FreezingRegion> regions;
    std::vector<int> rank;  ///< by surface node: 1 for the nodes of the first area and so on, 0 in none
};

/// The local maxima of the time to freeze over the surface graph. Neighbours of equal time form one area.
FreezingRegions FindLastFreezing(const kernel::BoundaryGraph& graph, const FreezeHistory& history);

}  // namespace qnl::series
