#pragma once

#include <gtest/gtest.h>

#include <limits>

#include "series/LoadedSeries.h"
#include "support_apps/BoxProject.h"

/// Cubes that stay above freezing in the last quarter of x; results everywhere but at x = 0.
struct SeriesFixture : testing::Test {
    SeriesFixture() {
        AddTime(1, 2.0F, 20.0);
        AddTime(2, 0.1F, 40.0);
        AddTime(0, 6.4F, 0.0);
    }
    void AddTime(int index, float seconds, double offset) const {
        project.AddTime(
            index, seconds, [&](const qnl::kernel::Point& place) { return 100.0 + offset + 10.0 * place[0]; },
            [&](const qnl::kernel::Point& place) {
                return OnSurfaceOfCubes(place) && place[0] > 0.0 ? offset + place[0]
                                                                 : std::numeric_limits<double>::quiet_NaN();
            });
    }
    qnl::series::LoadedSeries Load(std::size_t profiles) const {
        return qnl::series::LoadSeries(project.Series(), profiles);
    }

    BoxProject project{Cubes()};
};
