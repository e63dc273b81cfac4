#include "imports/ImportUnits.h"

#include <gtest/gtest.h>

namespace {

using qnl::imports::ChooseUnits;
using qnl::imports::ConversionOf;
using qnl::imports::DoubtOfDensity;
using qnl::imports::ImportRequest;
using qnl::imports::kQuantityRules;
using qnl::imports::ProblemOfDimensions;
using qnl::imports::Quantity;

double FactorOf(Quantity quantity, const ImportRequest& request) {
    return ConversionOf(quantity, request).factor;
}

TEST(ImportUnits, LengthsAreInMillimetres) {
    ImportRequest request;
    EXPECT_EQ(qnl::imports::LengthUnit(request), 1.0) << "as long as none is told";
    request.lengthUnit = "in";
    EXPECT_EQ(qnl::imports::LengthUnit(request), 25.4);
}

TEST(ImportUnits, WithoutOptionsThoseOfTheFormat) {
    ImportRequest si;
    ChooseUnits(true, si);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Velocity, si), 100.0);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Pressure, si), 1e-6);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Density, si), 1e-3);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Displacement, si), 1000.0);
    EXPECT_DOUBLE_EQ(ConversionOf(Quantity::Temperature, si).offset, -273.15);
    ImportRequest other;
    ChooseUnits(false, other);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Velocity, other), 0.1);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Pressure, other), 1.0);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Density, other), 1.0);
    EXPECT_DOUBLE_EQ(ConversionOf(Quantity::Temperature, other).offset, 0.0);
}

TEST(ImportUnits, AnOptionIsKept) {
    ImportRequest request;
    request.velocityUnit = "mm/s";
    request.pressureUnit = "bar";
    request.densityUnit = "g/cm3";
    ChooseUnits(true, request);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Velocity, request), 0.1);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Pressure, request), 0.1);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Density, request), 1.0);
}

TEST(ImportUnits, AVelocityWithoutUnitFollowsTheLength) {
    ImportRequest request;
    request.lengthUnit = "in";
    ChooseUnits(false, request);
    EXPECT_DOUBLE_EQ(FactorOf(Quantity::Velocity, request), 2.54);
}

TEST(ImportUnits, OtherDimensionsAreAProblemNoneAreNot) {
    const auto& rule = kQuantityRules[static_cast<std::size_t>(Quantity::Pressure)];
    qnl::interop::ForeignArray array{"p", 1, true, {}};
    EXPECT_EQ(ProblemOfDimensions(rule, array, "case.foam"), "");
    array.dimensions = {1, -1, -2, 0, 0, 0, 0};
    EXPECT_EQ(ProblemOfDimensions(rule, array, "case.foam"), "");
    array.dimensions = {0, 2, -2, 0, 0, 0, 0};
    EXPECT_EQ(ProblemOfDimensions(rule, array, "case.foam"),
              "case.foam: \"p\" has the dimensions [0 2 -2 0 0 0 0], and a pressure has those of Pa, "
              "[1 -1 -2 0 0 0 0]; name another array with --pressure-array, or correct the dimensions in the "
              "files of the field");
}

TEST(ImportUnits, DensitiesOfNoPolymerAreDoubted) {
    ImportRequest request;
    request.densityUnit = "g/cm3";
    EXPECT_EQ(DoubtOfDensity(request, 0.9, 1.4), "");
    EXPECT_NE(DoubtOfDensity(request, 900.0, 1000.0).find("add --density-unit kg/m3"), std::string::npos);
    request.densityUnit = "kg/m3";
    EXPECT_NE(DoubtOfDensity(request, 0.0009, 0.001).find("add --density-unit g/cm3"), std::string::npos);
    EXPECT_NE(DoubtOfDensity(request, -1.0, 1.0), "");
}

}  // namespace
