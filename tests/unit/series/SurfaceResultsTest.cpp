#include "series/SurfaceResults.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "support_apps/BoxProject.h"

namespace {

using qnl::kernel::Point;

TEST(SurfaceOf, SplitsFacesIntoTrianglesThatFaceOutwards) {
    const BoxProject project(Cubes());
    const auto one = [](const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : std::nan(""); };
    project.AddTime(0, 1.0F, one, one);
    const qnl::series::OpenedProject opened(project.Series());
    const qnl::series::Surface surface = qnl::series::SurfaceOf(opened);
    EXPECT_EQ(surface.Nodes(), 42U);
    EXPECT_EQ(surface.triangles.size(), 80U);
    double volume = 0.0;
    for (const auto& triangle : surface.triangles) {
        std::array<std::array<double, 3>, 3> p{};
        for (std::size_t c = 0; c < 3; ++c) {
            for (std::size_t a = 0; a < 3; ++a) {
                p[c][a] = static_cast<double>(surface.points[static_cast<std::size_t>(triangle[c])][a]);
            }
        }
        volume += (p[0][0] * (p[1][1] * p[2][2] - p[1][2] * p[2][1]) +
                   p[0][1] * (p[1][2] * p[2][0] - p[1][0] * p[2][2]) +
                   p[0][2] * (p[1][0] * p[2][1] - p[1][1] * p[2][0])) /
                  6.0;
    }
    EXPECT_NEAR(volume, 16.0, 1e-9);
}

TEST(Label, CarriesTheUnitInBrackets) {
    EXPECT_EQ(qnl::series::Label("Frozen ratio", "%"), "Frozen ratio [%]");
    EXPECT_EQ(qnl::series::Label("Packing index", ""), "Packing index");
}

}  // namespace
