#include "compare/DifferenceItems.h"

#include <utility>

namespace qnl::compare {

void AddDifferenceItems(const Both<ComparedSeries>& sides, const SeriesDifference& difference,
                        series::SurfaceResults& results) {
    for (const series::ItemOverTime& a : sides[0].results.items) {
        series::ItemOverTime item{kDifferenceItems + a.id, "Difference: " + a.name, a.unit, {}};
        item.values.resize(sides[0].files.times.size());
        bool hasAny = false;
        for (const TimeDifference& time : difference.times) {
            const auto [timeOfA, timeOfB] = time.times;
            const series::ItemOverTime* b = FindCounterpart(a, sides[1].results, timeOfB);
            if (b != nullptr && !a.values[timeOfA].empty()) {
                item.values[timeOfA] = Differences(a.values[timeOfA], b->values[timeOfB]);
                hasAny = true;
            }
        }
        if (hasAny) {
            results.items.push_back(std::move(item));
        }
    }
}

}  // namespace qnl::compare
