#include "series/PeopleNames.h"

#include <gtest/gtest.h>

#include <array>

#include "context/OutputQuantities.h"

namespace {

using qnl::series::FindPeopleName;
using qnl::series::IsWarpResult;
using qnl::series::PeopleUnit;

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

}  // namespace
