// A plate that cools from a uniform melt between walls of mould temperature, by its Fourier series (H. S.
// Carslaw and J. C. Jaeger, Conduction of Heat in Solids, 2nd ed. 1959, section 3.4): how far the resolved
// profile is from it when the nodal values are exact.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "profile/kernels/FrozenKernels.h"
#include "profile/kernels/WindowKernels.h"
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
double FrozenRatio(double fo, double freeze) {
    double low = 0.0;
    double high = 0.5 * kWall;
    for (int step = 0; step < 100; ++step) {
        const double middle = 0.5 * (low + high);
        (Temperature(middle, fo) < freeze ? low : high) = middle;
    }
    return 200.0 * high / kWall;
}

constexpr double kFreeze[] = {124.5, 130.0};
constexpr double kEarly = 0.006;
constexpr double kFourier[] = {kEarly, 0.02, 0.03, 0.05, 0.08};
constexpr std::size_t kTimes = std::size(kFourier);

// Largest errors of profiles: points of the frozen ratio, and percent of the range for the temperatures.
struct Errors {
    double frozen = 0.0;
    double centre = 0.0;
    double highest = 0.0;
    double above = 0.0;  // the melt
    double below = 0.0;  // the mould

    void Add(const ResolvedProfile& profile, double fo) {
        const auto percent = [](double kelvin) { return 100.0 * kelvin / (kMelt - kMould); };
        const auto depths = profile.Depths();
        const auto values = profile.Values(ProfileField::Temperature);
        for (const double freeze : kFreeze) {
            const double ratio = CalcuFrozenRatio(depths, values, freeze, 10.0);
            frozen = std::max(frozen, std::fabs(ratio - FrozenRatio(fo, freeze)));
            const WallLayers layers = ReadWallLayers(depths, values, freeze);
            EXPECT_NEAR(100.0 * (layers.frozenHere + layers.frozenFar) / layers.wall, ratio, 1e-9);
            EXPECT_NEAR(layers.wall, kWall, 1e-6);
        }
        const double exact = Temperature(0.5 * kWall, fo);
        centre = std::max(centre, percent(std::fabs(ValueAtMiddle(depths, values, depths.Count()) - exact)));
        highest = std::max(highest, percent(std::fabs(HighestValue(values) - exact)));
        above = std::max(above, percent(HighestValue(values) - kMelt));
        for (int i = 1; i <= values.Count(); ++i) {
            below = std::max(below, percent(kMould - values[i]));
        }
    }
};

struct PlateErrors {
    Errors atFront;  // Fourier number 0.006
    Errors early;    // 0.02 and 0.03
    Errors later;    // 0.05 and 0.08
};

// A plate in cooling at several times, whose gradients are recovered together.
class CoolingPlate {
public:
    CoolingPlate(const kernel::MeshData& data, int through, int wide)
        : mesh_(data), spacing_(kWall / through), side_(wide * spacing_) {
        std::vector<const double*> fields;
        for (const double fo : kFourier) {
            values_.push_back(mesh_.Values([&](const Point& p) {
                return p[0] > 1.5 * side_ ? TemperatureOfThickPlate(p[2], fo) : Temperature(p[2], fo);
            }));
        }
        for (const std::vector<double>& values : values_) {
            fields.push_back(values.data());
        }
        gradients_.resize(3 * kTimes * values_[0].size());
        kernel::GradientRecovery(mesh_.View()).Recover(fields.data(), kTimes, gradients_.data());
    }

    // Through wall nodes that keep away from the rim; linear between nodes if asked for.
    PlateErrors Measure(bool quadratic) const {
        PlateErrors errors;
        RecordedRays rays(mesh_, spacing_);
        ResolvedProfile profile;
        for (std::size_t t = 0; t < kTimes; ++t) {
            profile.TakeInput(InputAt(t, quadratic));
            Errors& sum = t == 0 ? errors.atFront : t < 3 ? errors.early : errors.later;
            int profiles = 0;
            for (int node = 1; node <= mesh_.View().nodeCount; ++node) {
                const Point place = mesh_.Place(node);
                const bool inner = std::min(place[0], place[1]) > 2.9 * spacing_ &&
                                   std::max(place[0], place[1]) < side_ - 2.9 * spacing_;
                if (inner && (place[2] == 0.0 || place[2] == kWall)) {
                    profile.Sample(rays.Pieces(place, {0.0, 0.0, place[2] == 0.0 ? 1.0 : -1.0}));
                    sum.Add(profile, kFourier[t]);
                    ++profiles;
                }
            }
            EXPECT_GE(profiles, 8);
        }
        return errors;
    }

    FieldRange RangeAt(std::size_t time) const {
        const kernel::RecordMesh view = mesh_.View();
        return RangeOfCooling({view.nodes, view.cells}, values_[time].data(), view.nodeCount, view.cellCount);
    }

    static constexpr double kThick = 8.0;  // mm

private:
    static double TemperatureOfThickPlate(double z, double fo) {
        const double part = kWall / kThick;
        return z <= 0.0 || z >= kThick ? kMould : Temperature(z * part, fo * part * part);
    }

    ProfileInput InputAt(std::size_t time, bool quadratic) const {
        ProfileInput input;
        input.mesh = {mesh_.View().nodes, mesh_.View().cells};
        const double* gradients = quadratic ? gradients_.data() + 3 * time : nullptr;
        input.fields[0] = {values_[time].data(), gradients, 3 * kTimes, RangeAt(time)};
        return input;
    }

    RecordedMesh mesh_;
    double spacing_;
    double side_;
    std::vector<std::vector<double>> values_;
    std::vector<double> gradients_;
};

struct Solid {
    const char* name;
    Fill fill;
    double jiggle;
};

constexpr Solid kSolids[] = {{"tetra", Fill::Tetra, 0.2},
                             {"hexa", Fill::Hexa, 0.2},
                             {"wedge", Fill::Wedge, 0.2},
                             {"regular hexa", Fill::Hexa, 0.0}};
constexpr int kWide = 7;

struct Plate {
    int through;
    double frozen;         // points, of moved nodes
    double frozenRegular;  // of regular layers
    double early, later;   // percent of the range, centre and highest, of moved nodes
    double earlyRegular, laterRegular;
    double above;  // at the front, percent of the range
};

// At 2 and 3 cells a front and a parabola look the same, so that the front overshoots.
constexpr Plate kPlates[] = {{2, 4.0, 4.0, 1.5, 0.6, 1.5, 0.6, 3.5},
                             {3, 3.2, 3.2, 6.0, 2.7, 5.0, 2.5, 21.5},
                             {4, 1.4, 1.4, 1.0, 1.0, 1.0, 1.0, 1.0},
                             {6, 0.4, 0.45, 0.5, 0.25, 0.5, 0.25, 1.0},
                             {8, 0.12, 0.12, 0.25, 0.25, 0.25, 0.25, 1.0}};

class PlateCooling : public ::testing::TestWithParam<Plate> {};

TEST_P(PlateCooling, IsMetByTheResolvedProfile) {
    const Plate& bound = GetParam();
    for (const Solid& solid : kSolids) {
        SCOPED_TRACE(solid.name);
        const bool regular = solid.jiggle == 0.0;
        const CoolingPlate plate(testing::JiggledPlate(solid.fill, bound.through, kWide, solid.jiggle),
                                 bound.through, kWide);
        const PlateErrors errors = plate.Measure(true);
        const double frozen = std::max(errors.early.frozen, errors.later.frozen);
        EXPECT_LT(frozen, regular ? bound.frozenRegular : bound.frozen);
        const double early = regular ? bound.earlyRegular : bound.early;
        const double later = regular ? bound.laterRegular : bound.later;
        EXPECT_LT(errors.early.centre, early);
        EXPECT_LT(errors.early.highest, early);
        EXPECT_LT(errors.later.centre, later);
        EXPECT_LT(errors.later.highest, later);
        EXPECT_LT(errors.atFront.above, bound.above);
        EXPECT_LT(errors.atFront.below, 1e-5) << "walls meet the mould sharply: no temperature below it";
        RecordProperty(std::string(solid.name) + "_frozen", std::to_string(frozen));
    }
}

// Beside a thick plate of the same part, whose core has not begun to cool, the melt temperature is known: the
// front does not overshoot, and nothing is worse than linear between nodes.
TEST_P(PlateCooling, IsNeverWorseThanLinearWhereThePartShowsItsMelt) {
    const int through = GetParam().through;
    for (const Solid& solid : kSolids) {
        SCOPED_TRACE(solid.name);
        kernel::MeshData part = testing::JiggledPlate(solid.fill, through, kWide, solid.jiggle);
        testing::BoxMesh thick;
        thick.fill = solid.fill;
        thick.blocks = {3, 3, 8};
        thick.origin = {2.0 * kWide * kWall / through, 0.0, 0.0};
        thick.size = {3.0, 3.0, CoolingPlate::kThick};
        testing::Append(part, testing::BuildBox(thick));
        const CoolingPlate plate(part, through, kWide);
        ASSERT_NEAR(plate.RangeAt(0).highest, kMelt, 0.01);
        const Errors resolved = plate.Measure(true).atFront;
        const Errors linear = plate.Measure(false).atFront;
        constexpr double kRounding = 0.05;  // percent of the range
        EXPECT_LT(resolved.frozen, linear.frozen);
        EXPECT_LT(resolved.centre, linear.centre + kRounding);
        EXPECT_LT(resolved.highest, linear.highest + kRounding);
        EXPECT_LT(resolved.above, 0.2) << "the average of a cell's corners may pass its edges by a little";
        EXPECT_LT(resolved.below, 0.01);
    }
}

INSTANTIATE_TEST_SUITE_P(Cells, PlateCooling, ::testing::ValuesIn(kPlates),
                         [](const auto& plate) { return std::to_string(plate.param.through); });

}  // namespace
}  // namespace qnl::profile
