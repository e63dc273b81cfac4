#include "text/ShellWord.h"

#include <gtest/gtest.h>

namespace {

using qnl::text::ShellPath;
using qnl::text::ShellWord;

TEST(ShellWord, PlainWordsStandAsTheyAre) {
    EXPECT_EQ(ShellWord("plate/Analysis/Run1/plate1.k4f"), "plate/Analysis/Run1/plate1.k4f");
    EXPECT_EQ(ShellWord("Gehäuse"), "Gehäuse");
}

#ifndef _WIN32
TEST(ShellWord, WhatAShellWouldTakeApartIsQuoted) {
    EXPECT_EQ(ShellWord("Gehäuse 3"), "'Gehäuse 3'");
    EXPECT_EQ(ShellWord("it's"), "'it'\\''s'");
    EXPECT_EQ(ShellWord("$HOME"), "'$HOME'");
    EXPECT_EQ(ShellWord("a\\b"), "'a\\b'");
    EXPECT_EQ(ShellWord("~"), "'~'");
    EXPECT_EQ(ShellWord(""), "''");
}
#endif

TEST(ShellPath, OneThatLooksLikeAnOptionBeginsWithItsFolder) {
    EXPECT_EQ(ShellPath("-x/part1.k4f"), "./-x/part1.k4f");
    EXPECT_EQ(ShellPath("x-/part1.k4f"), "x-/part1.k4f");
}

}  // namespace
