#include "imports/ImportArrays.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using qnl::imports::ChooseArray;
using qnl::imports::ChosenArray;
using qnl::imports::ChosenBy;
using qnl::imports::ImportRequest;
using qnl::imports::kQuantityRules;
using qnl::imports::Quantity;
using qnl::interop::ForeignSnapshot;

const qnl::imports::QuantityRule& RuleOf(Quantity quantity) {
    return kQuantityRules[static_cast<std::size_t>(quantity)];
}

ForeignSnapshot Arrays(std::vector<qnl::interop::ForeignArray> arrays) {
    ForeignSnapshot snapshot;
    snapshot.file = "part.vtu";
    snapshot.arrays = std::move(arrays);
    return snapshot;
}

std::string Problem(const std::function<void()>& action) {
    try {
        action();
    } catch (const qnl::interop::ForeignProblem& problem) {
        return problem.what();
    }
    return "none";
}

TEST(ChooseArray, CommonNamesCountWithoutCaseAndPunctuation) {
    const ChosenArray chosen = ChooseArray(RuleOf(Quantity::Temperature), {},
                                           Arrays({{"p", 1, false, {}}, {"Nd_Temp", 1, false, {}}}));
    EXPECT_EQ(chosen.by, ChosenBy::Name);
    EXPECT_EQ(chosen.name, "Nd_Temp");
    EXPECT_FALSE(chosen.onCells);
}

TEST(ChooseArray, TheBetterNameWinsWhateverTheOrderInTheFile) {
    const ForeignSnapshot snapshot = Arrays({{"T", 1, false, {}}, {"temperature", 1, true, {}}});
    const ChosenArray chosen = ChooseArray(RuleOf(Quantity::Temperature), {}, snapshot);
    EXPECT_EQ(chosen.name, "temperature");
    EXPECT_TRUE(chosen.onCells);
}

TEST(ChooseArray, AnArrayOfOtherComponentsIsPassedOver) {
    const ForeignSnapshot snapshot = Arrays({{"u", 1, false, {}}, {"vel", 3, false, {}}});
    EXPECT_EQ(ChooseArray(RuleOf(Quantity::Velocity), {}, snapshot).name, "vel");
    EXPECT_EQ(ChooseArray(RuleOf(Quantity::Displacement), {}, snapshot).by, ChosenBy::Nothing);
}

TEST(ChooseArray, OnPointsBeforeOnCells) {
    const ForeignSnapshot snapshot = Arrays({{"T", 1, true, {1.0}}, {"T", 1, false, {2.0}}});
    EXPECT_FALSE(ChooseArray(RuleOf(Quantity::Temperature), {}, snapshot).onCells);
    EXPECT_EQ(qnl::imports::FindArray(snapshot, "T")->values, std::vector<double>{2.0});
    EXPECT_EQ(qnl::imports::FindArray(snapshot, "t"), nullptr);
}

TEST(ChooseArray, DensityIsNeverLookedFor) {
    EXPECT_EQ(ChooseArray(RuleOf(Quantity::Density), {}, Arrays({{"density", 1, false, {}}})).by,
              ChosenBy::Nothing);
    ImportRequest request;
    request.density = "density";
    EXPECT_EQ(ChooseArray(RuleOf(Quantity::Density), request, Arrays({{"density", 1, true, {}}})).by,
              ChosenBy::Option);
}

TEST(ChooseArray, ANamedArrayThatIsNotThereIsRefusedWithTheNearestFirst) {
    ImportRequest request;
    request.temperature = "Temprature";
    const ForeignSnapshot snapshot = Arrays({{"velocity", 3, false, {}}, {"Temperature", 1, true, {}}});
    EXPECT_EQ(
        Problem([&] { ChooseArray(RuleOf(Quantity::Temperature), request, snapshot); }),
        "part.vtu holds no array \"Temprature\"; choose one that is there: Temperature (1 component, cells), "
        "velocity (3 components, points)");
    EXPECT_EQ(Problem([&] { ChooseArray(RuleOf(Quantity::Temperature), request, Arrays({})); }),
              "part.vtu holds no array \"Temprature\"; the file holds no array at all");
}

TEST(ChooseArray, ANamedArrayOfOtherComponentsIsRefused) {
    ImportRequest request;
    request.temperature = "velocity";
    EXPECT_EQ(Problem([&] {
                  ChooseArray(RuleOf(Quantity::Temperature), request, Arrays({{"velocity", 3, false, {}}}));
              }).find("part.vtu: array \"velocity\" has 3 components, but a temperature has 1; "),
              0U);
}

}  // namespace
