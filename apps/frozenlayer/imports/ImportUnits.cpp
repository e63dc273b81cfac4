#include "imports/ImportUnits.h"

#include <array>
#include <string_view>

#include "text/NumberText.h"

namespace qnl::imports {

namespace {

struct Unit {
    std::string_view word;
    double factor;  ///< to the unit of stage files, or mm
};
constexpr std::array<Unit, 4> kLengthUnits{{{"mm", 1.0}, {"cm", 10.0}, {"m", 1000.0}, {"in", 25.4}}};
constexpr std::array<Unit, 3> kVelocityUnits{{{"m/s", 100.0}, {"cm/s", 1.0}, {"mm/s", 0.1}}};
constexpr std::array<Unit, 3> kPressureUnits{{{"MPa", 1.0}, {"Pa", 1e-6}, {"bar", 0.1}}};
constexpr std::array<Unit, 2> kDensityUnits{{{"g/cm3", 1.0}, {"kg/m3", 1e-3}}};

template <std::size_t kCount>
double FactorOf(const std::array<Unit, kCount>& units, const std::string& word) {
    for (const Unit& unit : units) {
        if (unit.word == word) {
            return unit.factor;
        }
    }
    return 1.0;
}

/// A unit that may be left open, and what is taken then.
struct OpenUnit {
    std::string ImportRequest::*unit;
    const char* si;
    const char* other;
};
constexpr std::array<OpenUnit, 5> kOpenUnits{{
    {&ImportRequest::lengthUnit, "m", "mm"},
    {&ImportRequest::temperatureUnit, "K", "degC"},
    {&ImportRequest::velocityUnit, "m/s", ""},
    {&ImportRequest::pressureUnit, "Pa", "MPa"},
    {&ImportRequest::densityUnit, "kg/m3", "g/cm3"},
}};

/// What a quantity is measured in, by Quantity.
struct Measure {
    const char* unit;
    interop::Dimensions dimensions;
};
constexpr std::array<Measure, kQuantities> kMeasures{{
    {"K", {0, 0, 0, 1, 0, 0, 0}},
    {"m/s", {0, 1, -1, 0, 0, 0, 0}},
    {"m", {0, 1, 0, 0, 0, 0, 0}},
    {"s", {0, 0, 1, 0, 0, 0, 0}},
    {"kg/m³", {1, -3, 0, 0, 0, 0, 0}},
    {"a share", {0, 0, 0, 0, 0, 0, 0}},
    {"Pa", {1, -1, -2, 0, 0, 0, 0}},
}};

std::string DimensionsText(const interop::Dimensions& dimensions) {
    std::string text = "[";
    for (const double exponent : dimensions) {
        text += (text.size() == 1 ? "" : " ") + text::NumberText(exponent);
    }
    return text + "]";
}

}  // namespace

void ChooseUnits(bool isSi, ImportRequest& request) {
    for (const OpenUnit& open : kOpenUnits) {
        std::string& unit = request.*open.unit;
        if (unit.empty()) {
            unit = isSi ? open.si : open.other;
        }
    }
}

double LengthUnit(const ImportRequest& request) {
    return FactorOf(kLengthUnits, request.lengthUnit);
}

Conversion ConversionOf(Quantity quantity, const ImportRequest& request) {
    constexpr double kFreezingOfWater = 273.15;
    constexpr double kMillimetresPerCentimetre = 10.0;
    switch (quantity) {
        case Quantity::Temperature:
            return {1.0, request.temperatureUnit == "K" ? -kFreezingOfWater : 0.0};
        case Quantity::Velocity:
            return {request.velocityUnit.empty() ? LengthUnit(request) / kMillimetresPerCentimetre
                                                 : FactorOf(kVelocityUnits, request.velocityUnit),
                    0.0};
        case Quantity::Displacement:
            return {LengthUnit(request), 0.0};
        case Quantity::Pressure:
            return {FactorOf(kPressureUnits, request.pressureUnit), 0.0};
        case Quantity::Density:
            return {FactorOf(kDensityUnits, request.densityUnit), 0.0};
        default:
            return {};
    }
}

std::string ProblemOfDimensions(const QuantityRule& rule, const interop::ForeignArray& array,
                                const std::string& file) {
    const Measure& measure = kMeasures[static_cast<std::size_t>(rule.quantity)];
    if (!array.dimensions || *array.dimensions == measure.dimensions) {
        return {};
    }
    return file + ": \"" + array.name + "\" has the dimensions " + DimensionsText(*array.dimensions) +
           ", and a " + rule.name + " has those of " + measure.unit + ", " +
           DimensionsText(measure.dimensions) + "; name another array with " + rule.option +
           ", or correct the dimensions in the files of the field";
}

std::string DoubtOfDensity(const ImportRequest& request, double low, double high) {
    constexpr double kLightest = 0.05;
    constexpr double kHeaviest = 25.0;
    if (low >= kLightest && high <= kHeaviest) {
        return {};
    }
    const char* other = request.densityUnit == "kg/m3" ? "g/cm3" : "kg/m3";
    return "densities from " + text::NumberText(low) + " to " + text::NumberText(high) +
           " g/cm³ are none of a polymer: if the file has them in " + other + ", add --density-unit " + other;
}

}  // namespace qnl::imports
