#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "whole_run/Figures.h"

/// One measured run and what it was of.
struct MeasuredCase {
    std::string shape;
    int threads = 0;
    RunFigures figures;
};

/// Exponent p of time ~ cells^p by least squares on the logarithms. Not a number for fewer than two
/// different sizes.
double FitGrowth(const std::vector<double>& cells, const std::vector<double>& seconds);

/// Two Markdown tables: every phase of every case, and the growth of every phase over the cases of one
/// shape and thread count.
void PrintReport(const std::vector<MeasuredCase>& cases, std::ostream& out);
