#include "compare/ComparisonReport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "context/Mode.h"
#include "text/NumberText.h"
#include "text/TextTable.h"

namespace qnl::compare {

namespace {

using Align = text::TextTable::Align;

/// The first texts, and how many more there are.
std::string ListText(const std::vector<std::string>& texts) {
    constexpr std::size_t kMost = 10;
    std::string list;
    for (std::size_t i = 0; i < std::min(kMost, texts.size()); ++i) {
        list += (i == 0 ? "" : ", ") + texts[i];
    }
    return texts.size() > kMost ? list + " and " + std::to_string(texts.size() - kMost) + " more" : list;
}

std::string TimesText(const series::SeriesFiles& files) {
    const std::string first = files.times.front().time.Text();
    const std::size_t count = files.times.size();
    return count == 1 ? first
                      : std::to_string(count) + ", " + first + " to " + files.times.back().time.Text();
}

void PrintHeading(const Both<ComparedSeries>& sides, std::ostream& out) {
    out << "Differences are B - A, at surface nodes of " << project::NativePath(sides[0].meshFile) << "\n";
    text::TextTable table({{""}, {"Result"}, {"Stage"}, {"Run"}, {"Mode"}, {"Material"}, {"Output times"}});
    for (std::size_t s = 0; s < sides.size(); ++s) {
        const ComparedSeries& side = sides[s];
        const project::StageFile& base = side.files.base;
        table.AddRow({kSideNames[s], project::NativePath(side.files.times.back().resultFile),
                      project::StageTitle(base.extension), base.run, RulesOf(side.files.view.mode).name,
                      side.material, TimesText(side.files)});
    }
    table.Print(out);
    out << "\n";
}

std::string SignedText(double number) {
    return (number > 0.0 ? "+" : "") + text::NumberText(number);
}

struct ReportColumn {
    const char* heading;
    Align align;
    std::string (*text)(const ItemDifference& item, const series::Surface& surface);
};

/// Where the largest difference is; nowhere when all values are equal.
template <typename Tell>
std::string PlaceText(const ItemDifference& item, const Tell& tell) {
    return item.values.Differs() ? tell(item.values.place) : "-";
}

template <std::size_t Axis>
std::string CoordinateText(const ItemDifference& item, const series::Surface& surface) {
    return PlaceText(item,
                     [&](std::size_t node) { return text::NumberText(double{surface.points[node][Axis]}); });
}

constexpr std::array<ReportColumn, 10> kColumns{{
    {"Item", Align::Left, [](const ItemDifference& item, const series::Surface&) { return item.name; }},
    {"Unit", Align::Left,
     [](const ItemDifference& item, const series::Surface&) {
         return item.unit.empty() ? std::string("-") : item.unit;
     }},
    {"Nodes", Align::Right,
     [](const ItemDifference& item, const series::Surface&) { return std::to_string(item.values.compared); }},
    {"Largest difference", Align::Right,
     [](const ItemDifference& item, const series::Surface&) { return SignedText(item.values.largest); }},
    {"At node", Align::Right,
     [](const ItemDifference& item, const series::Surface& surface) {
         return PlaceText(item, [&](std::size_t node) { return std::to_string(surface.labels[node]); });
     }},
    {"x [mm]", Align::Right, CoordinateText<0>},
    {"y [mm]", Align::Right, CoordinateText<1>},
    {"z [mm]", Align::Right, CoordinateText<2>},
    {"Mean magnitude", Align::Right,
     [](const ItemDifference& item, const series::Surface&) {
         return text::NumberText(item.values.meanMagnitude);
     }},
    {"RMS", Align::Right,
     [](const ItemDifference& item, const series::Surface&) { return text::NumberText(item.values.rms); }},
}};

void PrintItems(const TimeDifference& difference, const series::Surface& surface, std::ostream& out) {
    std::vector<text::TextTable::Column> headings;
    std::transform(kColumns.begin(), kColumns.end(), std::back_inserter(headings),
                   [](const ReportColumn& column) {
                       return text::TextTable::Column{column.heading, column.align};
                   });
    text::TextTable table(std::move(headings));
    for (const ItemDifference& item : difference.items) {
        std::vector<std::string> row;
        std::transform(kColumns.begin(), kColumns.end(), std::back_inserter(row),
                       [&](const ReportColumn& column) { return column.text(item, surface); });
        table.AddRow(std::move(row));
    }
    table.Print(out);
}

void PrintWhatOneHas(const TimeDifference& difference, std::ostream& out) {
    for (std::size_t s = 0; s < kSideNames.size(); ++s) {
        const std::vector<int>& labels = difference.nodesOfOne[s];
        if (!labels.empty()) {
            std::vector<std::string> texts;
            std::transform(labels.begin(), labels.end(), std::back_inserter(texts),
                           [](int label) { return std::to_string(label); });
            out << "  " << text::CountText(static_cast<long long>(labels.size()), "node") << " only in "
                << kSideNames[s] << ": " << ListText(texts) << "\n";
        }
        const std::vector<std::string>& items = difference.itemsOfOne[s];
        if (!items.empty()) {
            out << "  " << text::CountText(static_cast<long long>(items.size()), "item") << " only in "
                << kSideNames[s] << ": " << ListText(items) << "\n";
        }
    }
}

void PrintNotFinite(const TimeDifference& difference, std::ostream& out) {
    for (const ItemDifference& item : difference.items) {
        if (item.values.notFinite > 0) {
            out << "  " << item.name << ": not a number at " << text::CountText(item.values.notFinite, "node")
                << ", at " << std::to_string(item.values.finiteInOne) << " of them in one result only\n";
        }
    }
}

/// "6.4 s", or both times where they differ.
std::string TimeText(const Both<ComparedSeries>& sides, const TimeDifference& difference) {
    const std::string a = sides[0].files.times[difference.times[0]].time.Text();
    const std::string b = sides[1].files.times[difference.times[1]].time.Text();
    return a == b ? a : a + " of A, " + b + " of B";
}

void PrintTime(const Both<ComparedSeries>& sides, const TimeDifference& difference, std::ostream& out) {
    out << "Output time " << TimeText(sides, difference) << "\n";
    if (difference.nodes == 0) {
        out << "  no node has a result in both\n";
    } else if (!difference.items.empty()) {
        PrintItems(difference, sides[0].surface, out);
    }
    PrintNotFinite(difference, out);
    PrintWhatOneHas(difference, out);
    out << "\n";
}

void PrintTimesOfOne(const Both<ComparedSeries>& sides, const SeriesDifference& difference,
                     std::ostream& out) {
    for (std::size_t s = 0; s < sides.size(); ++s) {
        std::vector<std::string> texts;
        for (const std::size_t time : difference.timesOfOne[s]) {
            texts.push_back(sides[s].files.times[time].time.Text());
        }
        if (!texts.empty()) {
            out << text::CountText(static_cast<long long>(texts.size()), "output time") << " only in "
                << kSideNames[s] << ": " << ListText(texts) << "\n\n";
        }
    }
}

/// Keeps the item with the largest difference of its unit; units stand in the order in which they differ.
void KeepLargestOfUnit(const ItemDifference& item, std::vector<ItemDifference>& largest) {
    const auto have = std::find_if(largest.begin(), largest.end(),
                                   [&](const ItemDifference& other) { return other.unit == item.unit; });
    if (have == largest.end()) {
        largest.push_back(item);
    } else if (std::fabs(item.values.largest) > std::fabs(have->values.largest)) {
        *have = item;
    }
}

/// The largest difference of all times for every unit in which there is one, with its item.
std::string LargestText(const SeriesDifference& difference) {
    std::vector<ItemDifference> largest;
    for (const TimeDifference& time : difference.times) {
        for (const ItemDifference& item : time.items) {
            if (item.values.Differs()) {
                KeepLargestOfUnit(item, largest);
            }
        }
    }
    std::string text;
    for (const ItemDifference& item : largest) {
        text += (text.empty() ? "" : ", ") + text::NumberText(std::fabs(item.values.largest)) +
                (item.unit.empty() ? "" : " " + item.unit) + " (" + item.name + ")";
    }
    return text;
}

/// About what both of them have.
std::string CommonText(const SeriesDifference& difference) {
    if (difference.HasSameBits()) {
        return "A and B are equal to the bit in what both have";
    }
    const std::string largest = LargestText(difference);
    return largest.empty() ? "A and B are equal wherever both have numbers, but not to the bit"
                           : "A and B differ by at most " + largest;
}

std::string ClosingText(const SeriesDifference& difference) {
    if (difference.IsEqual()) {
        return "A and B are equal to the bit.";
    }
    return CommonText(difference) +
           (difference.IsOneSided() ? "; see above for what stands in one of them only." : ".");
}

}  // namespace

void PrintComparison(const Both<ComparedSeries>& sides, const SeriesDifference& difference,
                     std::optional<double> tolerance, std::ostream& out) {
    PrintHeading(sides, out);
    for (const TimeDifference& time : difference.times) {
        PrintTime(sides, time, out);
    }
    PrintTimesOfOne(sides, difference, out);
    out << ClosingText(difference) << "\n";
    if (tolerance) {
        out << (difference.IsWithin(*tolerance) ? "Within" : "Not within") << " the tolerance of "
            << text::NumberText(*tolerance) << ".\n";
    }
}

}  // namespace qnl::compare
