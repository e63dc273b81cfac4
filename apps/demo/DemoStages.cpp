#include "demo/DemoStages.h"

#include <cmath>

#include "material/MaterialFile.h"
#include "results/StageItems.h"

namespace qnl::demo {

namespace {

constexpr const char* kMaterial =
    "name = \"Generic polypropylene\"\n"
    "kind = \"thermoplastic\"\n"
    "type_code = 0\n"
    "freeze_temperature = 130.0\n"
    "[pvt]\n"
    "b1m = 0.00126\n"
    "b2m = 9e-07\n"
    "b3m = 85000000.0\n"
    "b4m = 0.0046\n"
    "b1s = 0.00116\n"
    "b2s = 5.2e-07\n"
    "b3s = 135000000.0\n"
    "b4s = 0.0038\n"
    "b5 = 396.15\n"
    "b6 = 2.3e-07\n"
    "b7 = 0.0001\n"
    "b8 = 0.07\n"
    "b9 = 1.6e-08\n";

/// What the values of one stage and time are made from.
struct DemoState {
    const DemoCooling& cooling;
    material::Material material;
    double roomDensity;  ///< g/cm3 at 25 degC and 0.1 MPa
    double seconds;
    kernel::Point middle;  ///< of the box around the part, mm
    double half;           ///< half of its length along x, mm

    double PackedDensity(const kernel::Point& p) const {
        constexpr double kPressure = 1e7;
        return material::Density(material, kPressure, cooling.Temperature(p, seconds));
    }
};

DemoState MakeState(const DemoCooling& cooling, double seconds) {
    constexpr double kRoomPressure = 1e5;
    constexpr double kRoomTemperature = 25.0;
    material::Material material = material::ParseMaterial(kMaterial);
    const double roomDensity = material::Density(material, kRoomPressure, kRoomTemperature);
    const DemoPart& part = cooling.Part();
    const double outside = part.InnerRadius() + kDemoWall;
    const double half = part.Closed() ? outside : 0.5 * part.edge * part.blocks[0];
    const kernel::Point middle = part.Closed() ? kernel::Point{0.0, 0.0, 0.5 * part.edge * part.blocks[1]}
                                               : kernel::Point{half, 0.5 * part.edge * part.blocks[1],
                                                               0.5 * part.edge * part.blocks[2]};
    return {cooling, std::move(material), roomDensity, seconds, middle, half};
}

/// Unit direction along the part: x, or around the ring.
kernel::Point Along(const DemoState& state, const kernel::Point& p) {
    if (!state.cooling.Part().Closed()) {
        return {1.0, 0.0, 0.0};
    }
    const double radius = std::hypot(p[0], p[1]);
    return {-p[1] / radius, p[0] / radius, 0.0};
}

double Velocity(const DemoState& state, const kernel::Point& p, std::size_t axis) {
    constexpr double kFastest = 50.0;  // cm/s
    const double speed = kFastest * state.cooling.Excess(p, state.seconds) * std::exp(-state.seconds);
    return speed * Along(state, p)[axis];
}

double Displacement(const DemoState& state, const kernel::Point& p, std::size_t axis) {
    constexpr double kContraction = 0.006;
    constexpr double kBend = 0.01;  // lift of the ends by half of the length
    const double along = (p[0] - state.middle[0]) / state.half;
    const double lift = axis == 2 ? kBend * state.half * along * along : 0.0;
    return lift - kContraction * (p[axis] - state.middle[axis]);
}

double Shrinkage(const DemoState& state, const kernel::Point& p) {
    constexpr double kPercent = 100.0;
    return kPercent * (1.0 - state.PackedDensity(p) / state.roomDensity);
}

double FreezeTime(const DemoState& state, const kernel::Point& p) {
    return state.cooling.TimeTo(p, state.material.freezeTemperature);
}

double Temperature(const DemoState& state, const kernel::Point& p) {
    return state.cooling.Temperature(p, state.seconds);
}

/// An item of a stage and how its value at a point is found.
struct DemoItem {
    StageKind stage;
    int id;
    double (*value)(const DemoState& state, const kernel::Point& p);
};

template <std::size_t Axis>
double VelocityAlong(const DemoState& state, const kernel::Point& p) {
    return Velocity(state, p, Axis);
}

template <std::size_t Axis>
double DisplacementAlong(const DemoState& state, const kernel::Point& p) {
    return Displacement(state, p, Axis);
}

/// By ascending number.
constexpr DemoItem kItems[] = {
    {StageKind::Flow, kFlowTemperature, Temperature},
    {StageKind::Flow, kFlowVelocityU, VelocityAlong<0>},
    {StageKind::Flow, kFlowVelocityV, VelocityAlong<1>},
    {StageKind::Flow, kFlowVelocityW, VelocityAlong<2>},
    {StageKind::Flow, kFlowShrinkage, Shrinkage},
    {StageKind::Flow, kFlowDensity,
     [](const DemoState& state, const kernel::Point& p) { return state.PackedDensity(p); }},
    {StageKind::Cool, kCoolTemperature, Temperature},
    {StageKind::Cool, kCoolCoolingTime, FreezeTime},
    {StageKind::Warp, kWarpDisplacementX, DisplacementAlong<0>},
    {StageKind::Warp, kWarpDisplacementY, DisplacementAlong<1>},
    {StageKind::Warp, kWarpDisplacementZ, DisplacementAlong<2>},
    {StageKind::Warp, kWarpShrinkage, Shrinkage},
};

struct StageTraits {
    Stage files;
    DemoStage stage;
    bool hasTimes;
};
constexpr StageTraits kStages[] = {
    {kFlowStage, DemoStage::Flow, true},
    {kPackStage, DemoStage::Pack, true},
    {kCoolStage, DemoStage::Cool, false},
    {kWarpStage, DemoStage::Warp, false},
};

const StageTraits& Traits(DemoStage stage) {
    for (const StageTraits& traits : kStages) {
        if (traits.stage == stage) {
            return traits;
        }
    }
    throw std::invalid_argument("no such demo stage");
}

}  // namespace

std::string_view DemoExtension(DemoStage stage) {
    return Traits(stage).files.pattern;
}

bool HasDemoTimes(DemoStage stage) {
    return Traits(stage).hasTimes;
}

std::string_view DemoMaterialText() {
    return kMaterial;
}

std::vector<results::ResultItem> MakeDemoItems(DemoStage stage, const DemoCooling& cooling,
                                               const std::vector<kernel::Point>& points, double seconds) {
    const DemoState state = MakeState(cooling, seconds);
    std::vector<results::ResultItem> items;
    for (const DemoItem& item : kItems) {
        if (item.stage != Traits(stage).files.kind) {
            continue;
        }
        std::vector<float> values(points.size());
#pragma omp parallel for schedule(static) default(none) shared(values, points, item, state)
        for (std::size_t i = 0; i < points.size(); ++i) {
            values[i] = static_cast<float>(item.value(state, points[i]));
        }
        items.push_back(results::MakeStageItem(item.stage, item.id, std::move(values)));
    }
    return items;
}

}  // namespace qnl::demo
