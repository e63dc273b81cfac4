#include "base/WindowsPath.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(IndexedName, SuffixGrowsWithTheIndex) {
    EXPECT_EQ(qnl::IndexedName("part.k4f", 1), "part_001.k4f");
    EXPECT_EQ(qnl::IndexedName("part.k4f", 9), "part_009.k4f");
    EXPECT_EQ(qnl::IndexedName("part.k4f", 10), "part_010.k4f");
    EXPECT_EQ(qnl::IndexedName("part.k4f", 12), "part_012.k4f");
    EXPECT_EQ(qnl::IndexedName("part.k4f", 99), "part_099.k4f");
    EXPECT_EQ(qnl::IndexedName("part.k4f", 100), "part_100.k4f");
    EXPECT_EQ(qnl::IndexedName("part.k4f", 345), "part_345.k4f");
}

TEST(IndexedName, IndexZeroCarriesThreeZerosBeforeTheNumber) {
    EXPECT_EQ(qnl::IndexedName("part.k4f", 0), "part_0000.k4f");
}

TEST(IndexedName, OnlyTheLastDotCounts) {
    EXPECT_EQ(qnl::IndexedName("a.b\\c.d.k4f", 2), "a.b\\c.d_002.k4f");
}

TEST(IndexedName, NameWithoutDotIsOutOfRange) {
    EXPECT_THROW(qnl::IndexedName("part", 1), std::out_of_range);
    EXPECT_THROW(qnl::IndexedName("", 1), std::out_of_range);
}

TEST(Extension, IsReplacedFromTheLastDot) {
    EXPECT_EQ(qnl::ReplaceExtension("D:\\P\\a.b.hdf", ".sur"), "D:\\P\\a.b.sur");
    EXPECT_THROW(qnl::ReplaceExtension("mesh", ".sur"), std::out_of_range);
    EXPECT_EQ(qnl::CutExtension("x.k4f"), "x");
}

TEST(CutFileName, CutsAtTheLastSeparator) {
    EXPECT_EQ(qnl::CutFileName("D:\\P\\a.lgz"), "D:\\P");
    EXPECT_THROW(qnl::CutFileName("a.lgz"), std::out_of_range);
}

TEST(CutFileName, MessageNamesThePath) {
    try {
        qnl::CutFileName("a.lgz");
        FAIL();
    } catch (const std::out_of_range& fault) {
        EXPECT_NE(std::string(fault.what()).find("invalid string position"), std::string::npos);
        EXPECT_NE(std::string(fault.what()).find("a.lgz"), std::string::npos);
    }
}
