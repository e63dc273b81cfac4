#pragma once

#include <limits>

#include "compare/ComparedSeries.h"

/// Two results of three surface nodes, labels 11 to 13, at 1 s and 2 s, equal in everything.
struct ComparisonSample {
    static constexpr float kNothing = std::numeric_limits<float>::quiet_NaN();

    ComparisonSample() : sides{Side(), Side()} {}

    static qnl::compare::ComparedSeries Side() {
        qnl::compare::ComparedSeries side;
        side.files.base = {"part", "part", "1", ".k4f", 0};
        side.files.realTimes = true;
        side.files.times = {{{1, 1.0}, "", "part1_001.fzr", 1.0}, {{0, 2.0}, "", "part1.fzr", 2.0}};
        side.meshFile = "part.hdf";
        side.files.view.mode = qnl::Mode::Corrected;
        side.material = "pp.toml";
        side.surface.nodes = {1, 2, 3};
        side.surface.labels = {11, 12, 13};
        side.surface.points = {{0.0F, 0.0F, 0.0F}, {1.0F, 2.0F, 2.0F}, {3.0F, 0.0F, 0.25F}};
        side.results.hasResult = {{1, 1, 1}, {1, 1, 1}};
        side.results.items = {{1, "Frozen ratio", "%", {{10.0F, 20.0F, 30.0F}, {40.0F, 50.0F, 60.0F}}},
                              {11, "Packing index", "", {{0.5F, 0.5F, 0.5F}, {0.25F, 0.25F, 0.25F}}}};
        return side;
    }

    qnl::compare::Both<qnl::compare::ComparedSeries> sides;
};
