#pragma once

#include <string>
#include <vector>

#include "page/ReportBlocks.h"
#include "series/LoadedSeries.h"

namespace qnl::page {

/// One item of the results page.
struct ReportItem {
    int id = 0;
    std::string name;
    std::string unit;
    std::string note;
    bool steady = false;                     ///< one list of values holds for all times
    std::vector<std::vector<float>> values;  ///< by time, by surface node; empty at a time without result
    bool neverFrozen = false;                ///< a missing value may mean that the node never freezes
    ValueRange range;

    std::string BlockName(std::size_t time) const;
};

/// The items of the results, then the frozen layers, time to freeze and wall thickness.
std::vector<ReportItem> ReportItems(const series::LoadedSeries& loaded);

/// What a missing value of the page may mean, by status.
inline constexpr const char* kMissingValues[] = {"no result", "never frozen"};

/// Levels of an item at one time, nodes in the order of the page.
Levels ItemLevels(const ReportItem& item, std::size_t time, const series::LoadedSeries& loaded);

}  // namespace qnl::page
