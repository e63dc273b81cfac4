// A plate that cools from a uniform melt between walls of mould temperature, by its Fourier series (H. S.
// Carslaw and J. C. Jaeger, Conduction of Heat in Solids, 2nd ed. 1959, section 3.4): how far the resolved
// profile is from it when the nodal values are exact.
#include <gtest/gtest.h>

#include <cmath>

#include "profile/kernels/FrozenKernels.h"
#include "profile/resolved/ProfileReadings.h"
#include "profile/resolved/ResolvedProfile.h"
#include "support/RecordedMesh.h"

namespace qnl::profile {
namespace {

using kernel::Point;
using testing::Fill;
using testing::RecordedMesh;
using testing::RecordedRays;

constexpr double kMould = 40.0;
constexpr double kMelt = 230.0;
constexpr double kFreeze = 130.0;
constexpr double kWall = 2.0;
constexpr double kPi = 3.14159265358979323846;

// Share of the melt's excess at the relative depth x after the Fourier number fo.
double Excess(double x, double fo) {
    double sum = 0.0;
    for (int n = 1; n < 400; n += 2) {
        sum += 4.0 / (kPi * n) * std::sin(n * kPi * x) * std::exp(-n * n * kPi * kPi * fo);
    }
    return sum;
}

double Temperature(double z, double fo) {
    return z <= 0.0 || z >= kWall ? kMould : kMould + (kMelt - kMould) * Excess(z / kWall, fo);
}

// Percent of the wall below the freeze temperature.
double FrozenRatio(double fo) {
    double low = 0.0;
    double high = 0.5 * kWall;
    for (int step = 0; step < 100; ++step) {
        const double middle = 0.5 * (low + high);
        (Temperature(middle, fo) < kFreeze ? low : high) = middle;
    }
    return 200.0 * high / kWall;
}

struct Plate {
    int through;
    double frozenPoints;  // largest error of the frozen ratio, Fo 0.02 to 0.08
};

constexpr Plate kPlates[] = {{2, 4.0}, {3, 3.2}, {4, 1.4}, {6, 0.4}, {8, 0.12}};

class PlateCooling : public ::testing::TestWithParam<Plate> {
protected:
    static constexpr int kWide = 8;

    // Calls check(profile) for both wall nodes of columns that keep away from the rim.
    template <class Check>
    static void ForProfiles(Fill fill, int through, double fo, Check check) {
        const RecordedMesh mesh(testing::JiggledPlate(fill, through, kWide));
        const kernel::RecordMesh view = mesh.View();
        const std::vector<double> values = mesh.Values([&](const Point& p) { return Temperature(p[2], fo); });
        const std::vector<double> gradients = mesh.Gradients(values);
        ProfileInput input;
        input.mesh = {view.nodes, view.cells};
        input.fields[0] = {values.data(), gradients.data(), 3, kMould};
        ResolvedProfile profile;
        profile.TakeInput(input);
        const double h = kWall / through;
        RecordedRays rays(mesh, h);
        for (int node = 1; node <= view.nodeCount; ++node) {
            const Point place = mesh.Place(node);
            const bool inner =
                std::fmin(place[0], place[1]) > 2.9 * h && std::fmax(place[0], place[1]) < (kWide - 2.9) * h;
            if (inner && (place[2] == 0.0 || place[2] == kWall)) {
                profile.Sample(rays.Pieces(place, {0.0, 0.0, place[2] == 0.0 ? 1.0 : -1.0}));
                check(profile);
            }
        }
    }
};

TEST_P(PlateCooling, IsMetByTheFrozenRatioOfTheResolvedProfile) {
    const auto [through, bound] = GetParam();
    for (const Fill fill : {Fill::Tetra, Fill::Hexa, Fill::Wedge}) {
        double largest = 0.0;
        int profiles = 0;
        for (const double fo : {0.02, 0.03, 0.05, 0.08}) {
            const double exact = FrozenRatio(fo);
            ForProfiles(fill, through, fo, [&](const ResolvedProfile& profile) {
                const auto temperatures = profile.Values(ProfileField::Temperature);
                const double ratio = CalcuFrozenRatio(profile.Depths(), temperatures, kFreeze, 10.0);
                largest = std::fmax(largest, std::fabs(ratio - exact));
                const WallLayers layers = ReadWallLayers(profile.Depths(), temperatures, kFreeze);
                EXPECT_NEAR(100.0 * (layers.frozenHere + layers.frozenFar) / layers.wall, ratio, 1e-9);
                EXPECT_NEAR(layers.wall, kWall, 1e-6);
                ++profiles;
            });
        }
        EXPECT_GT(profiles, 8);
        EXPECT_LT(largest, bound) << "fill " << static_cast<int>(fill);
        RecordProperty("frozen_points_" + std::to_string(static_cast<int>(fill)), std::to_string(largest));
    }
}

TEST_P(PlateCooling, IsMetByTheHighestTemperatureFromFourCellsOn) {
    const auto [through, bound] = GetParam();
    if (through < 4) {
        GTEST_SKIP() << "2 and 3 cells see too little of the core";
    }
    for (const Fill fill : {Fill::Tetra, Fill::Hexa, Fill::Wedge}) {
        for (const double fo : {0.04, 0.08}) {
            const double exact = Temperature(0.5 * kWall, fo);
            ForProfiles(fill, through, fo, [&](const ResolvedProfile& profile) {
                const double highest = HighestValue(profile.Values(ProfileField::Temperature));
                EXPECT_NEAR(highest, exact, 0.01 * (kMelt - kMould));
            });
        }
    }
}

// Walls meet the mould sharply: no temperature below it.
TEST_P(PlateCooling, KeepsAboveTheMouldTemperatureEarlyOn) {
    ForProfiles(Fill::Tetra, GetParam().through, 0.006, [&](const ResolvedProfile& profile) {
        const auto temperatures = profile.Values(ProfileField::Temperature);
        for (int i = 1; i <= temperatures.Count(); ++i) {
            EXPECT_GT(temperatures[i], kMould - 1e-5);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Cells, PlateCooling, ::testing::ValuesIn(kPlates),
                         [](const auto& plate) { return std::to_string(plate.param.through); });

}  // namespace
}  // namespace qnl::profile
