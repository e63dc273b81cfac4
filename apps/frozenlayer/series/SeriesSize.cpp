#include "series/SeriesSize.h"

#include "project/OutputTime.h"

namespace qnl::series {

SeriesSize MeasureSeries(const SeriesFiles& series) {
    SeriesSize size;
    for (const SeriesTime& time : series.times) {
        const project::StageSummary summary = project::ReadStageSummary(time.resultFile);
        const auto nodes = static_cast<std::uintmax_t>(summary.nodes);
        size.nodes += nodes;
        size.values += nodes * summary.items.size();
    }
    return size;
}

}  // namespace qnl::series
