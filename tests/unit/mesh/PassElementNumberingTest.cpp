#include "mesh/PassElementNumbering.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using qnl::CellId;
using qnl::FaceId;
using qnl::PassElement;
using qnl::mesh::PassElementNumbering;

constexpr PassElementNumbering kTenFaces{10};

// The one way between pass elements and what they are.
static_assert(
    std::is_invocable_r_v<CellId, decltype(&PassElementNumbering::Cell), PassElementNumbering, PassElement>);
static_assert(!std::is_invocable_v<decltype(&PassElementNumbering::Cell), PassElementNumbering, CellId>);
static_assert(!std::is_invocable_v<decltype(&PassElementNumbering::IsFace), PassElementNumbering, FaceId>);
static_assert(!std::is_invocable_v<decltype(&PassElementNumbering::IsFace), PassElementNumbering, int>);

}  // namespace

TEST(PassElementNumbering, FacesComeBeforeCells) {
    EXPECT_TRUE(kTenFaces.IsFace(PassElement(1)));
    EXPECT_TRUE(kTenFaces.IsFace(PassElement(10)));
    EXPECT_FALSE(kTenFaces.IsFace(PassElement(11)));
    EXPECT_EQ(kTenFaces.Face(PassElement(10)).Value(), 10);
    EXPECT_EQ(kTenFaces.Cell(PassElement(11)).Value(), 1);
    EXPECT_EQ(kTenFaces.Cell(PassElement(25)).Value(), 15);
}

TEST(PassElementNumbering, NumbersFacesAndCellsApart) {
    EXPECT_EQ(kTenFaces.Element(FaceId(1)).Value(), 1);
    EXPECT_EQ(kTenFaces.Element(FaceId(10)).Value(), 10);
    EXPECT_EQ(kTenFaces.Element(CellId(1)).Value(), 11);
    EXPECT_EQ(kTenFaces.Element(CellId(15)).Value(), 25);
}
