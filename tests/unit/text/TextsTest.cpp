#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <sstream>

#include "context/OutputQuantities.h"
#include "project/FaultReport.h"
#include "project/OutputTime.h"
#include "project/ProjectPaths.h"
#include "series/ItemStatistics.h"
#include "series/PeopleNames.h"
#include "text/JsonWriter.h"
#include "text/NumberText.h"
#include "text/TextTable.h"

namespace {

using namespace qnl::project;
using namespace qnl::series;
using namespace qnl::text;

TEST(PeopleNames, NameWhatTheFilesCall) {
    constexpr std::array<std::array<std::string_view, 2>, qnl::kItemCount> kPairs{{
        {"Frozen_Ratio", "Frozen ratio"},
        {"Max_Temperature", "Maximum temperature"},
        {"Center_Temperature", "Centre temperature"},
        {"Average_Temperature", "Average temperature"},
        {"Bulk_Temperature", "Bulk temperature"},
        {"Skin_Ratio", "Skin ratio"},
        {"Mold_Temperature_Diff", "Mould temperature difference"},
        {"Max_CoolingTime", "Maximum cooling time"},
        {"Skin_Thickness", "Skin thickness"},
        {"Fill_MaxCoolingTime", "Maximum cooling time, filling"},
        {"PackingIndex", "Packing index"},
        {"SinkMarkDisplacement_Totoal", "Sink-mark displacement, total"},
        {"SinkMarkDisplacement_u", "Sink-mark displacement, x"},
        {"SinkMarkDisplacement_v", "Sink-mark displacement, y"},
        {"SinkMarkDisplacement_w", "Sink-mark displacement, z"},
        {"Max_VolumeShrinkage", "Maximum volume shrinkage"},
        {"Average_Velocity_u", "Average velocity, x"},
        {"Average_Velocity_v", "Average velocity, y"},
        {"Average_Velocity_w", "Average velocity, z"},
        {"Flake_ColorIntensity", "Flake colour intensity"},
    }};
    for (int id = 1; id <= static_cast<int>(kPairs.size()); ++id) {
        const auto& [file, people] = kPairs[static_cast<std::size_t>(id) - 1];
        EXPECT_EQ(qnl::QuantityOfItem(id).name, file);
        EXPECT_EQ(FindPeopleName(id, false)->name, people);
    }
}

/// Units agree with those of the files, but for those that the files have by tradition.
TEST(PeopleNames, UnitsAreThoseOfTheFilesOrKnownExceptions) {
    for (int id = 1; id <= static_cast<int>(qnl::kItemCount); ++id) {
        const qnl::OutputQuantity& item = qnl::QuantityOfItem(id);
        const std::string_view people = FindPeopleName(id, false)->unit;
        switch (id) {
            case 1:
            case 6:
                EXPECT_EQ(people, "%") << item.name;
                break;
            case 8:
            case 10:
                EXPECT_EQ(people, "s") << item.name;
                break;
            default:
                EXPECT_EQ(people, PeopleUnit(item.unit)) << item.name;
        }
    }
}

TEST(PeopleNames, InWarpResultsItemOneIsTheSinkMarkDisplacement) {
    EXPECT_EQ(FindPeopleName(1, true)->name, "Sink-mark displacement");
    EXPECT_EQ(FindPeopleName(1, true)->unit, "mm");
    EXPECT_EQ(FindPeopleName(2, true), FindPeopleName(2, false));
    EXPECT_TRUE(IsWarpResult("a\\part1.wzr"));
    EXPECT_TRUE(IsWarpResult("a\\part1_003.wzr"));
    EXPECT_FALSE(IsWarpResult("a.wzr\\part1.fzr"));
    EXPECT_FALSE(IsWarpResult("zr"));
}

TEST(PeopleNames, OtherIdsHaveNone) {
    EXPECT_EQ(FindPeopleName(0, false), nullptr);
    EXPECT_EQ(FindPeopleName(21, false), nullptr);
    EXPECT_EQ(FindPeopleName(-1, true), nullptr);
}

TEST(TextTable, AlignsByCharactersAndLeavesNoBlankAtLineEnds) {
    TextTable table({{"Name"}, {"Unit"}, {"Value", TextTable::Align::Right}});
    table.AddRow({"Temperature", "°C", "1"});
    table.AddRow({"x", "-", "12345.6"});
    std::ostringstream out;
    table.Print(out);
    EXPECT_EQ(out.str(),
              "  Name         Unit    Value\n"
              "  Temperature  °C          1\n"
              "  x            -     12345.6\n");
}

TEST(TextTable, CharactersAreNotBytes) {
    EXPECT_EQ(CharacterCount("°C"), 2U);
    EXPECT_EQ(CharacterCount(""), 0U);
}

TEST(JsonWriter, NestsAndSeparates) {
    JsonWriter json;
    json.BeginObject();
    json.Key("a");
    json.Value(std::int64_t{1});
    json.Key("list");
    json.BeginArray();
    json.Value(0.1);
    json.Value(true);
    json.EndArray();
    json.Key("empty");
    json.BeginObject();
    json.EndObject();
    json.EndObject();
    EXPECT_EQ(json.Text(), "{\n  \"a\": 1,\n  \"list\": [\n    0.1,\n    true\n  ],\n  \"empty\": {}\n}\n");
}

std::string JsonOf(std::string_view text) {
    JsonWriter json;
    json.Value(text);
    return json.Text();
}

TEST(JsonWriter, EscapesTexts) {
    EXPECT_EQ(JsonOf("a\"b\\c\n\t°"), "\"a\\\"b\\\\c\\u000a\\u0009°\"\n");
}

TEST(JsonWriter, BytesThatAreNotUtf8AreReplaced) {
    EXPECT_EQ(JsonOf("a\xFF"
                     "b\xC3"),
              "\"a\uFFFDb\uFFFD\"\n");
    EXPECT_EQ(JsonOf("\xED\xA0\x80"), "\"\uFFFD\uFFFD\uFFFD\"\n");
    EXPECT_EQ(JsonOf("\xC0\xAF"), "\"\uFFFD\uFFFD\"\n");
}

TEST(JsonWriter, NumbersThatAreNotFiniteAreNull) {
    for (const double number : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        JsonWriter json;
        json.Value(number);
        EXPECT_EQ(json.Text(), "null\n");
    }
}

TEST(NumberText, HasFiveDigits) {
    EXPECT_EQ(NumberText(123456.789), "1.2346e+05");
    EXPECT_EQ(NumberText(0.25), "0.25");
    EXPECT_EQ(NumberText(6.400000095367432), "6.4");
    EXPECT_EQ(NumberText(std::nan("")), "-");
    EXPECT_EQ(CountText(1, "node"), "1 node");
    EXPECT_EQ(CountText(0, "node"), "0 nodes");
}

TEST(ItemStatistics, LeavesOutWhatIsNotFinite) {
    const ItemStatistics values = Summarise({3.0F, std::nanf(""), -1.0F, INFINITY, 4.0F});
    EXPECT_EQ(values.min, -1.0);
    EXPECT_EQ(values.mean, 2.0);
    EXPECT_EQ(values.max, 4.0);
    EXPECT_EQ(values.finite, 3);
    EXPECT_EQ(values.notFinite, 2);
}

TEST(ItemStatistics, NothingHasNoRange) {
    const ItemStatistics values = Summarise({});
    EXPECT_TRUE(std::isnan(values.min) && std::isnan(values.mean) && std::isnan(values.max));
    EXPECT_EQ(values.finite, 0);
}

TEST(OutputTime, IsTheRealTimeOrElseTheIndex) {
    EXPECT_EQ((OutputTime{3, 0.25}.Text()), "0.25 s");
    EXPECT_EQ((OutputTime{3, std::nullopt}.Text()), "index 3");
}

TEST(FaultSentence, JoinsWhatIsKnown) {
    EXPECT_EQ(FaultSentence({"a\\b.k4f", "item 6", "10 values", "9 values", "write it again"}),
              qnl::project::NativePath("a\\b.k4f") +
                  ": item 6: 10 values expected, 9 values found; write it again.");
    EXPECT_EQ(FaultSentence({"", "item 6", "", "a gap", ""}), "item 6: a gap.");
    EXPECT_EQ(FaultSentence({"f", "", "a text", "", ""}), "f: a text expected.");
}

TEST(PrintFaults, TellsEqualOnesOnce) {
    std::ostringstream out;
    PrintFaults({}, out);
    EXPECT_EQ(out.str(), "");
    PrintFaults({{"f", "", "x", "", ""}, {"g", "", "x", "", ""}, {"f", "", "x", "", ""}}, out);
    EXPECT_EQ(out.str(), "2 faults:\n  f: x expected.\n  g: x expected.\n");
}

}  // namespace
