#include "page/ReportItems.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "series/PeopleNames.h"
#include "text/NumberText.h"

namespace qnl::page {

namespace {

constexpr int kTimeToFreezeItem = 101;
constexpr int kNeverFrozenStatus = 1;

ReportItem ItemOfResults(const series::ItemOverTime& item) {
    return {item.id, item.name, item.unit, "", false, item.values, false, {}};
}

ReportItem TimeToFreeze(const series::LoadedSeries& loaded) {
    const std::string note = "When the highest temperature along the inward ray falls below " +
                             text::NumberText(loaded.history->freezeTemperature) +
                             " °C; frozen at the first output time counts as that time";
    return {kTimeToFreezeItem,
            "Time to freeze",
            loaded.series.AxisUnit(),
            note,
            true,
            {loaded.history->timeToFreeze},
            true,
            {}};
}

/// What the notes of the frozen layers say, in their order.
constexpr std::array<const char*, series::kLayerNames> kLayerNotes{
    "Depth at which the temperature along the normal first reaches the freeze temperature",
    "The same from the opposite wall",
    "What lies between the two frozen layers",
};

std::vector<ReportItem> FrozenLayers(const series::LoadedSeries& loaded) {
    std::vector<ReportItem> items;
    for (const series::ItemOverTime& item : loaded.layers) {
        items.push_back(ItemOfResults(item));
        items.back().note = kLayerNotes[items.size() - 1];
    }
    return items;
}

ReportItem WallThickness(const series::LoadedSeries& loaded) {
    std::vector<float> walls;
    for (const double wall : loaded.rays.wall) {
        walls.push_back(wall > 0.0 ? static_cast<float>(wall) : std::numeric_limits<float>::quiet_NaN());
    }
    const series::PeopleName& wall = series::kWallNames.back();
    return {wall.id,
            std::string(wall.name),
            std::string(wall.unit),
            "Way of the inward ray in the solid, runner included",
            true,
            {std::move(walls)},
            false,
            {}};
}

}  // namespace

std::string ReportItem::BlockName(std::size_t time) const {
    return "item-" + std::to_string(id) + "-" + std::to_string(time);
}

std::vector<ReportItem> ReportItems(const series::LoadedSeries& loaded) {
    std::vector<ReportItem> items;
    for (const series::ItemOverTime& item : loaded.results.items) {
        items.push_back(ItemOfResults(item));
    }
    for (ReportItem& item : FrozenLayers(loaded)) {
        items.push_back(std::move(item));
    }
    if (loaded.history && loaded.history->Freezes()) {
        items.push_back(TimeToFreeze(loaded));
    }
    items.push_back(WallThickness(loaded));
    for (ReportItem& item : items) {
        item.range = FiniteRange(item.values);
    }
    return items;
}

Levels ItemLevels(const ReportItem& item, std::size_t time, const series::LoadedSeries& loaded) {
    Levels levels;
    levels.reserve(loaded.order.size());
    for (const int node : loaded.order) {
        const auto i = static_cast<std::size_t>(node);
        const bool never = item.neverFrozen && loaded.history->status[i] == series::FreezeStatus::NeverFrozen;
        levels.push_back(never ? StatusLevel(kNeverFrozenStatus) : LevelOf(item.values[time][i], item.range));
    }
    return levels;
}

}  // namespace qnl::page
