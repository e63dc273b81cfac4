#include "whole_run/Report.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <ostream>
#include <tuple>
#include <utility>

namespace {

std::string Fixed(double value, int decimals) {
    constexpr std::size_t kLongest = 64;
    if (std::isnan(value)) {
        return "-";
    }
    char text[kLongest];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

void PrintRow(std::ostream& out, const std::vector<std::string>& cells) {
    out << "|";
    for (const std::string& cell : cells) {
        out << " " << cell << " |";
    }
    out << "\n";
}

void PrintHeading(std::ostream& out, const std::vector<std::string>& titles, std::size_t texts) {
    PrintRow(out, titles);
    out << "|";
    for (std::size_t i = 0; i < titles.size(); ++i) {
        out << (i < texts ? "---|" : "---:|");
    }
    out << "\n";
}

std::string PerItem(double seconds, std::int64_t items) {
    constexpr double kNanoseconds = 1e9;
    return items == 0 ? "-" : Fixed(kNanoseconds * seconds / static_cast<double>(items), 1);
}

void PrintCase(const MeasuredCase& measured, std::ostream& out) {
    constexpr double kMegabyte = 1e6;
    const RunFigures& run = measured.figures;
    for (std::size_t phase = 0; phase < kPhases; ++phase) {
        const PhaseFigures& figures = run.phases[phase];
        PrintRow(
            out,
            {kPhaseTitles[phase], measured.shape, std::to_string(run.cells), std::to_string(run.rays),
             std::to_string(run.passedCells), std::to_string(measured.threads), Fixed(figures.seconds, 4),
             figures.peakBytes == 0 ? "-" : Fixed(static_cast<double>(figures.peakBytes) / kMegabyte, 0),
             PerItem(figures.seconds, run.cells), PerItem(figures.seconds, run.rays),
             PerItem(figures.seconds, run.passedCells)});
    }
}

void PrintGrowth(const std::vector<MeasuredCase>& cases, std::ostream& out) {
    std::map<std::pair<std::string, int>, std::vector<RunFigures>> groups;
    for (const MeasuredCase& measured : cases) {
        groups[{measured.shape, measured.threads}].push_back(measured.figures);
    }
    for (const auto& [group, runs] : groups) {
        for (std::size_t phase = 0; phase < kPhases; ++phase) {
            std::vector<double> cells;
            std::vector<double> seconds;
            for (const RunFigures& run : runs) {
                cells.push_back(static_cast<double>(run.cells));
                seconds.push_back(run.phases[phase].seconds);
            }
            PrintRow(out, {kPhaseTitles[phase], group.first, std::to_string(group.second),
                           Fixed(FitGrowth(cells, seconds), 2)});
        }
    }
}

}  // namespace

double FitGrowth(const std::vector<double>& cells, const std::vector<double>& seconds) {
    const double count = static_cast<double>(cells.size());
    double meanX = 0.0;
    double meanY = 0.0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        meanX += std::log(cells[i]) / count;
        meanY += std::log(seconds[i]) / count;
    }
    double xx = 0.0;
    double xy = 0.0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const double x = std::log(cells[i]) - meanX;
        xx += x * x;
        xy += x * (std::log(seconds[i]) - meanY);
    }
    return xx > 0.0 ? xy / xx : std::numeric_limits<double>::quiet_NaN();
}

void PrintReport(const std::vector<MeasuredCase>& cases, std::ostream& out) {
    constexpr std::size_t kTexts = 2;
    PrintHeading(out,
                 {"phase", "shape", "cells", "rays", "passed cells", "threads", "s", "peak MB", "ns a cell",
                  "ns a ray", "ns a passed cell"},
                 kTexts);
    for (const MeasuredCase& measured : cases) {
        PrintCase(measured, out);
    }
    out << "\nGrowth: exponent of time over cells, least squares on the logarithms.\n\n";
    PrintHeading(out, {"phase", "shape", "threads", "exponent"}, kTexts);
    PrintGrowth(cases, out);
}
