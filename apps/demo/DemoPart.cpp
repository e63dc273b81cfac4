#include "demo/DemoPart.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace qnl::demo {

namespace {

constexpr double kPi = 3.14159265358979323846;

/// A planned part and the number of its blocks.
struct Plan {
    DemoPart part;
    std::int64_t blocks = 0;
};

std::int64_t Product(int a, int b, int c) {
    return static_cast<std::int64_t>(a) * b * c;
}

Plan OneBrick(int length, int width, int layers) {
    Plan plan;
    plan.part.blocks = {length, width, layers};
    plan.part.bricks = {{{0, 0, 0}, {length, width, layers}}};
    plan.blocks = Product(length, width, layers);
    return plan;
}

Plan PlanPlate(int length, int layers) {
    return OneBrick(length, 2 * length / 3, layers);
}

Plan PlanRing(int length, int layers) {
    return OneBrick(length, length / 4, layers);
}

/// Floor, four walls around it, and ribs that run through floor and walls.
Plan PlanCover(int length, int layers) {
    const int width = 2 * length / 3;
    const int height = length / 3;
    const int rib = layers / 2;
    const int ribTop = layers + (height - layers) / 2;
    const int first = (length - rib) / 3;
    const int second = 2 * (length - rib) / 3;
    const int along = (width - rib) / 2;
    Plan plan;
    plan.part.blocks = {length, width, height};
    plan.part.bricks = {
        {{0, 0, 0}, {length, width, layers}},
        {{0, 0, 0}, {layers, width, height}},
        {{length - layers, 0, 0}, {length, width, height}},
        {{0, 0, 0}, {length, layers, height}},
        {{0, width - layers, 0}, {length, width, height}},
        {{first, 0, 0}, {first + rib, width, ribTop}},
        {{second, 0, 0}, {second + rib, width, ribTop}},
        {{0, along, 0}, {length, along + rib, ribTop}},
    };
    const int innerLength = length - 2 * layers;
    const int innerWidth = width - 2 * layers;
    plan.blocks = Product(length, width, layers) + Product(length, width, height - layers) -
                  Product(innerLength, innerWidth, height - layers) +
                  Product(2 * rib, innerWidth, ribTop - layers) +
                  Product(rib, innerLength - 2 * rib, ribTop - layers);
    return plan;
}

/// How a shape is planned from its length in blocks, and its least length in layers.
struct ShapePlan {
    DemoShape shape;
    Plan (*plan)(int length, int layers);
    int shortest;
};
constexpr std::array<ShapePlan, 3> kShapePlans{{
    {DemoShape::Plate, PlanPlate, 6},
    {DemoShape::Cover, PlanCover, 6},
    {DemoShape::Ring, PlanRing, 8},
}};
constexpr std::array<int, 3> kLayers{6, 4, 2};

const ShapePlan& FindShapePlan(DemoShape shape) {
    for (const ShapePlan& plan : kShapePlans) {
        if (plan.shape == shape) {
            return plan;
        }
    }
    throw std::invalid_argument("no such demo shape");
}

int ChooseLayers(const ShapePlan& shape, double wanted) {
    for (const int layers : kLayers) {
        if (static_cast<double>(shape.plan(shape.shortest * layers, layers).blocks) <= wanted) {
            return layers;
        }
    }
    return kLayers.back();
}

/// The last length that does not exceed the wish, or the next. The number of blocks grows with the square of
/// the length and is at least half of it.
Plan NearestPlan(const ShapePlan& shape, int layers, double wanted) {
    int length = shape.shortest * layers;
    int beyond = length + 2 * static_cast<int>(std::sqrt(wanted));
    while (beyond - length > 1) {
        const int middle = length + (beyond - length) / 2;
        (static_cast<double>(shape.plan(middle, layers).blocks) <= wanted ? length : beyond) = middle;
    }
    Plan below = shape.plan(length, layers);
    Plan above = shape.plan(beyond, layers);
    const bool takeAbove =
        static_cast<double>(above.blocks) - wanted < wanted - static_cast<double>(below.blocks);
    return takeAbove ? above : below;
}

}  // namespace

double DemoPart::InnerRadius() const {
    return edge * (blocks[0] / (2.0 * kPi) - 0.5 * layers);
}

kernel::Point DemoPart::Place(const kernel::Point& grid) const {
    if (!Closed()) {
        return {edge * grid[0], edge * grid[1], edge * grid[2]};
    }
    const double angle = 2.0 * kPi * grid[0] / blocks[0];
    const double radius = InnerRadius() + edge * grid[2];
    return {radius * std::cos(angle), radius * std::sin(angle), edge * grid[1]};
}

kernel::Point DemoPart::GridPoint(const kernel::Point& place) const {
    if (!Closed()) {
        return {place[0] / edge, place[1] / edge, place[2] / edge};
    }
    return {0.0, place[2] / edge, (std::hypot(place[0], place[1]) - InnerRadius()) / edge};
}

DemoPart PlanDemoPart(DemoShape shape, int cells) {
    if (cells < kFewestDemoCells || cells > kMostDemoCells) {
        throw std::invalid_argument(std::to_string(cells) + " cells asked for; a demo part has " +
                                    std::to_string(kFewestDemoCells) + " to " +
                                    std::to_string(kMostDemoCells));
    }
    const ShapePlan& plan = FindShapePlan(shape);
    const double wanted = static_cast<double>(cells) / kTetrasPerBlock;
    const int layers = ChooseLayers(plan, wanted);
    DemoPart part = NearestPlan(plan, layers, wanted).part;
    part.shape = shape;
    part.layers = layers;
    part.edge = kDemoWall / layers;
    return part;
}

}  // namespace qnl::demo
