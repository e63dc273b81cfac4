#include "project/PlainName.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qnl::project::PlainName;
using qnl::project::ProjectName;

TEST(PlainName, KeepsLettersOfAllScriptsDigitsAndBlanksInside) {
    EXPECT_EQ(PlainName("Gehäuse 3"), "Gehäuse 3");
    EXPECT_EQ(PlainName("外壳-2_b"), "外壳-2_b");
    EXPECT_EQ(PlainName("  lid "), "lid");
}

TEST(PlainName, WhatFilesOrRunFilesMeanByItGoes) {
    EXPECT_EQ(PlainName("a.b/c\\d=e"), "a-b-c-d-e");
    EXPECT_EQ(PlainName("a\x01\x7F"), "a--");
    EXPECT_EQ(PlainName(""), "part");
    EXPECT_EQ(PlainName("   "), "part");
}

TEST(PlainName, BytesThatAreNoLettersBecomeDashes) {
    EXPECT_EQ(PlainName("Geh\xE4use"), "Geh-use");
    EXPECT_EQ(PlainName("a\xC3"), "a-");
    EXPECT_EQ(PlainName("\xFF"), "-");
}

TEST(PlainName, IsCutBetweenLetters) {
    EXPECT_EQ(PlainName(std::string(59, 'x') + "ä"), std::string(59, 'x'));
    EXPECT_EQ(PlainName(std::string(58, 'x') + "äy"), std::string(58, 'x') + "ä");
}

TEST(ProjectName, KeepsDigitsUnlessTheyWouldReadAsAnOutputTime) {
    EXPECT_EQ(ProjectName("Gehäuse 3", "1"), "Gehäuse 3");
    EXPECT_EQ(ProjectName("part_2", "1"), "part_2");
    EXPECT_EQ(ProjectName("part1_10", "1"), "part");
    EXPECT_EQ(ProjectName("1_10", "1"), "part");
}

}  // namespace
