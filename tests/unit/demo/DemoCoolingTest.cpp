#include <gtest/gtest.h>

#include <cmath>

#include "demo/DemoMesh.h"
#include "demo/DemoStages.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl {
namespace {

constexpr double kDiffusivity = 0.18 / (0.95 * 2.3);

TEST(SlabExcessTest, SolvesTheConductionEquation) {
    constexpr double kStep = 1e-3;
    constexpr double kThickness = 2.0;
    for (const double seconds : {0.3, 2.0, 2.7, 9.0}) {
        for (const double depth : {0.2, 0.7, 1.0, 1.6}) {
            const auto at = [&](double d, double t) { return demo::SlabExcess(d, kThickness, t); };
            const double rate = (at(depth, seconds + kStep) - at(depth, seconds - kStep)) / (2.0 * kStep);
            const double curvature =
                (at(depth + kStep, seconds) - 2.0 * at(depth, seconds) + at(depth - kStep, seconds)) /
                (kStep * kStep);
            EXPECT_NEAR(rate, kDiffusivity * curvature, 1e-5) << depth << " mm, " << seconds << " s";
        }
    }
}

TEST(SlabExcessTest, TheTwoSolutionsMeet) {
    const double change = 0.05 * 4.0 / kDiffusivity;  // s
    for (const double depth : {0.01, 0.5, 1.0, 1.99}) {
        EXPECT_NEAR(demo::SlabExcess(depth, 2.0, change * (1.0 - 1e-10)),
                    demo::SlabExcess(depth, 2.0, change), 1e-8);
    }
}

TEST(SlabExcessTest, FacesAreColdAndTheStartIsHot) {
    EXPECT_EQ(demo::SlabExcess(0.0, 2.0, 1.0), 0.0);
    EXPECT_EQ(demo::SlabExcess(2.0, 2.0, 1.0), 0.0);
    EXPECT_EQ(demo::SlabExcess(-0.5, 2.0, 1.0), 0.0);
    EXPECT_EQ(demo::SlabExcess(0.5, 2.0, 0.0), 1.0);
}

TEST(DemoCoolingTest, TheWholeSurfaceHasTheMouldsTemperature) {
    for (const demo::DemoShape shape :
         {demo::DemoShape::Plate, demo::DemoShape::Cover, demo::DemoShape::Ring}) {
        const demo::DemoPart part = demo::PlanDemoPart(shape, 20000);
        const demo::DemoCooling cooling(part);
        const kernel::MeshData mesh = demo::MeshDemoPart(part);
        for (const kernel::BoundaryFace& face : kernel::BuildFaceTopology(mesh).boundary) {
            for (std::size_t c = 0; c < 3; ++c) {
                const kernel::Point& point = mesh.points[static_cast<std::size_t>(face.nodes[c])];
                ASSERT_NEAR(cooling.Temperature(point, 1.0), demo::kDemoMould, 1e-9);
            }
        }
    }
}

TEST(DemoCoolingTest, TheMiddleOfAPlateIsThatOfASlab) {
    const demo::DemoPart part = demo::PlanDemoPart(demo::DemoShape::Plate, 200000);
    const demo::DemoCooling cooling(part);
    const kernel::Point middle{0.5 * part.edge * part.blocks[0], 0.5 * part.edge * part.blocks[1], 1.0};
    const double fourier = kDiffusivity * 5.0 / 4.0;
    const double firstWave = 4.0 / M_PI * std::exp(-M_PI * M_PI * fourier);
    EXPECT_NEAR(cooling.Excess(middle, 5.0), firstWave, 1e-3);
}

TEST(DemoCoolingTest, ARibCoolsFasterThanAWallAndItsFootSlower) {
    const demo::DemoPart part = demo::PlanDemoPart(demo::DemoShape::Cover, 100000);
    const demo::DemoCooling cooling(part);
    const demo::BlockBox& rib = part.bricks[5];
    const double x = 0.5 * part.edge * (rib.low[0] + rib.high[0]);
    const double y = 0.25 * part.edge * part.blocks[1];
    const double floor = cooling.Excess({2.0 * x, y, 1.0}, 3.0);
    const double foot = cooling.Excess({x, y, 1.0}, 3.0);
    const double middle = cooling.Excess({x, y, 0.5 * part.edge * (part.layers + rib.high[2])}, 3.0);
    EXPECT_GT(foot, floor);
    EXPECT_LT(middle, floor);
}

TEST(DemoCoolingTest, TimeToATemperature) {
    const demo::DemoPart part = demo::PlanDemoPart(demo::DemoShape::Ring, 20000);
    const demo::DemoCooling cooling(part);
    const kernel::Point point{part.InnerRadius() + 0.8, 0.0, 0.3 * part.edge * part.blocks[1]};
    EXPECT_NEAR(cooling.Temperature(point, cooling.TimeTo(point, 130.0)), 130.0, 0.01);
    EXPECT_LT(cooling.TimeTo({part.InnerRadius(), 0.0, 1.0}, 130.0), 1e-3);
}

std::vector<int> Ids(demo::DemoStage stage) {
    const demo::DemoCooling cooling(demo::PlanDemoPart(demo::DemoShape::Plate, 2500));
    std::vector<int> ids;
    for (const results::ResultItem& item : demo::MakeDemoItems(stage, cooling, {{3.0, 3.0, 1.0}}, 1.0)) {
        ids.push_back(item.id);
    }
    return ids;
}

TEST(DemoStagesTest, ItemsOfEachStage) {
    EXPECT_EQ(Ids(demo::DemoStage::Flow), (std::vector<int>{6, 11, 12, 13, 14, 17}));
    EXPECT_EQ(Ids(demo::DemoStage::Pack), Ids(demo::DemoStage::Flow));
    EXPECT_EQ(Ids(demo::DemoStage::Cool), (std::vector<int>{1, 2}));
    EXPECT_EQ(Ids(demo::DemoStage::Warp), (std::vector<int>{1, 2, 3, 7}));
}

TEST(DemoStagesTest, ValuesAtAPoint) {
    const demo::DemoCooling cooling(demo::PlanDemoPart(demo::DemoShape::Ring, 20000));
    const kernel::Point point{0.0, cooling.Part().InnerRadius() + 1.0, 2.0};
    const auto items = demo::MakeDemoItems(demo::DemoStage::Flow, cooling, {point}, 1.0);
    EXPECT_FLOAT_EQ(items[0].values[0], static_cast<float>(cooling.Temperature(point, 1.0)));
    EXPECT_NEAR(items[1].values[0], -50.0 * std::exp(-1.0) * cooling.Excess(point, 1.0), 1e-4);
    EXPECT_NEAR(items[2].values[0], 0.0, 1e-6);
    EXPECT_GT(items[4].values[0], 0.0F);
    EXPECT_LT(items[4].values[0], 30.0F);
    EXPECT_NEAR(items[5].values[0], 0.77, 0.05);
}

}  // namespace
}  // namespace qnl
