#include "mesh/PassElementNumbering.h"

#include <gtest/gtest.h>

TEST(PassElementNumbering, FacesComeBeforeCells) {
    constexpr qnl::mesh::PassElementNumbering numbering{10};
    static_assert(numbering.IsFace(1) && numbering.IsFace(10) && !numbering.IsFace(11));
    EXPECT_EQ(numbering.FaceIndex(10), 10);
    EXPECT_EQ(numbering.CellIndex(11), 1);
    EXPECT_EQ(numbering.CellIndex(25), 15);
}
