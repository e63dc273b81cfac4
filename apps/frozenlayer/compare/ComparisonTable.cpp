#include "compare/ComparisonTable.h"

#include "exports/CsvFile.h"
#include "platform/HostFiles.h"
#include "text/TextFile.h"

namespace qnl::compare {

namespace {

std::string HeadRow(const Both<ComparedSeries>& sides) {
    std::string row;
    for (std::size_t s = 0; s < sides.size(); ++s) {
        const series::SeriesFiles& files = sides[s].files;
        row += series::Label(std::string(kSideNames[s]) + ": " + files.AxisName(), files.AxisUnit()) + ",";
    }
    return row +
           "Item number,Item,Unit,Nodes compared,Largest difference,Node label,x [mm],y [mm],z [mm],"
           "Mean magnitude,RMS,Nodes not finite,Nodes finite in one,Equal to the bit,"
           "Nodes only in A,Nodes only in B\n";
}

/// Label and place of the largest difference, empty when all values are equal.
std::string PlaceFields(const ItemDifference& item, const series::Surface& surface) {
    if (!item.values.Differs()) {
        return ",,,,";
    }
    std::string fields = "," + std::to_string(surface.labels[item.values.place]);
    for (const float coordinate : surface.points[item.values.place]) {
        fields += "," + text::ExactText(coordinate);
    }
    return fields;
}

std::string Fields(const ItemDifference& item, const series::Surface& surface) {
    const DifferenceStatistics& values = item.values;
    return std::to_string(item.id) + "," + exports::CsvField(item.name) + "," +
           exports::CsvField(item.unit.empty() ? "-" : item.unit) + "," + std::to_string(values.compared) +
           "," + text::ExactText(values.largest) + PlaceFields(item, surface) + "," +
           text::ExactText(values.meanMagnitude) + "," + text::ExactText(values.rms) + "," +
           std::to_string(values.notFinite) + "," + std::to_string(values.finiteInOne) + "," +
           (values.sameBits ? "1" : "0");
}

}  // namespace

bool WriteComparisonTable(const std::string& path, const Both<ComparedSeries>& sides,
                          const SeriesDifference& difference) {
    ReplacedFile file(path, "wb");
    file.Append(HeadRow(sides));
    for (const TimeDifference& time : difference.times) {
        std::string times;
        std::string nodesOfOne;
        for (std::size_t s = 0; s < sides.size(); ++s) {
            times += text::ExactText(sides[s].files.times[time.times[s]].axis) + ",";
            nodesOfOne += "," + std::to_string(time.nodesOfOne[s].size());
        }
        nodesOfOne += "\n";
        for (const ItemDifference& item : time.items) {
            file.Append(times);
            file.Append(Fields(item, sides[0].surface));
            file.Append(nodesOfOne);
        }
    }
    return file.Commit();
}

}  // namespace qnl::compare
