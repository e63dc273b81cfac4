#include "imports/TemperatureChecks.h"

#include <gtest/gtest.h>

namespace {

using qnl::imports::CheckTemperatures;
using qnl::imports::ChosenBy;
using qnl::imports::ImportedCase;
using qnl::imports::ImportedTime;
using qnl::imports::ImportRequest;
using qnl::imports::Quantity;
using qnl::imports::TemperatureWarnings;

/// Two output times of an array "t".
ImportedCase CaseOf(const std::vector<float>& first, const std::vector<float>& second,
                    ChosenBy by = ChosenBy::Name) {
    ImportedCase imported;
    imported.arrays[static_cast<std::size_t>(Quantity::Temperature)] = {by, "t"};
    for (const std::vector<float>& values : {first, second}) {
        ImportedTime& time = imported.times.emplace_back();
        time.values[static_cast<std::size_t>(Quantity::Temperature)] = {values};
    }
    return imported;
}

/// The one warning; empty for none.
std::string Warning(const ImportedCase& imported, std::optional<double> freeze = std::nullopt,
                    const char* unit = "degC") {
    ImportRequest request;
    request.temperatureUnit = unit;
    const std::vector<std::string> warnings = TemperatureWarnings(request, imported, freeze);
    EXPECT_LE(warnings.size(), 1U);
    return warnings.empty() ? "" : warnings.front();
}

bool Holds(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

TEST(TemperatureWarnings, SayNothingOfUsualOnes) {
    EXPECT_EQ(Warning(CaseOf({50.0F, 60.5F}, {230.0F, 60.0F}), 130.0), "");
    EXPECT_EQ(Warning(ImportedCase{}, 130.0), "") << "a stage without temperatures";
}

TEST(TemperatureWarnings, NameTheUnit) {
    EXPECT_TRUE(Holds(Warning(CaseOf({270.5F, 503.0F}, {300.0F, 310.0F})), "--temperature-unit K"));
    EXPECT_FALSE(Warning(CaseOf({270.5F, 503.0F}, {300.0F, 310.0F}), 130.0).empty()) << "and nothing else";
    EXPECT_EQ(Warning(CaseOf({269.5F, 503.0F}, {300.0F, 310.0F})), "");
    EXPECT_TRUE(Holds(Warning(CaseOf({-100.5F, 0.0F}, {0.0F, 0.0F}), {}, "K"), "--temperature-unit degC"));
    EXPECT_EQ(Warning(CaseOf({-99.5F, 0.0F}, {0.0F, 0.0F}), {}, "K"), "");
}

TEST(TemperatureWarnings, NameAFieldThatNeverChanges) {
    EXPECT_TRUE(
        Holds(Warning(CaseOf({60.5F, 60.5F}, {60.5F, 60.5F})), "\"t\" is 60.5 °C at every node and time"));
    EXPECT_EQ(Warning(CaseOf({60.5F, 60.5F}, {60.5F, 61.0F})), "");
}

TEST(TemperatureWarnings, NameWholeNumbers) {
    EXPECT_TRUE(
        Holds(Warning(CaseOf({1.0F, 2.0F}, {3.0F, 4.0F}, ChosenBy::Option)), "\"t\" has whole numbers only"));
    EXPECT_EQ(Warning(CaseOf({1.0F, 2.0F}, {3.0F, 4.5F}, ChosenBy::Option)), "");
    EXPECT_EQ(Warning(CaseOf({1.0F, 2.0F}, {3.0F, 4.0F})), "") << "found by its name";
}

TEST(TemperatureWarnings, NameAFreezeTemperatureOutside) {
    const ImportedCase imported = CaseOf({50.5F, 60.0F}, {90.0F, 100.0F});
    EXPECT_TRUE(
        Holds(Warning(imported, 100.5), "all below the freeze temperature, 100.5 °C, so that everything"));
    EXPECT_EQ(Warning(imported, 100.0), "") << "the hottest node is not frozen";
    EXPECT_EQ(Warning(imported, 51.0), "");
    EXPECT_TRUE(Holds(Warning(imported, 50.5), "all above the freeze temperature, 50.5 °C, so that nothing"));
}

/// What is said of the values; empty for nothing.
std::string Refusal(const std::vector<float>& values) {
    try {
        CheckTemperatures(values, "t", "a.vtu");
        return {};
    } catch (const qnl::interop::ForeignProblem& problem) {
        return problem.what();
    }
}

TEST(CheckTemperatures, RefusesMarkersOfMissingValues) {
    EXPECT_EQ(Refusal({-273.15F, 5000.0F, 20.0F}), "");
    EXPECT_TRUE(Holds(Refusal({20.0F, 1e20F, -1e30F}),
                      "a.vtu: \"t\" is no temperature at 2 nodes, the first 1e+20 °C"));
    EXPECT_TRUE(Holds(Refusal({-273.2F}), "at 1 node, the first -273.2 °C"));
}

}  // namespace
