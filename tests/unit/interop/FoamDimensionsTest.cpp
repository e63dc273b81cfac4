#include "interop/FoamDimensions.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ScratchFolder.h"

namespace {

using qnl::interop::Dimensions;
using qnl::interop::ParseFoamDimensions;
using qnl::interop::ReadFoamDimensions;

constexpr Dimensions kKelvin{0, 0, 0, 1, 0, 0, 0};
constexpr Dimensions kVelocity{0, 1, -1, 0, 0, 0, 0};

TEST(FoamDimensions, AreFiveToSevenExponentsOrNone) {
    EXPECT_EQ(ParseFoamDimensions("dimensions [0 1 -1 0 0 0 0];"), kVelocity);
    EXPECT_EQ(ParseFoamDimensions("FoamFile{}\ndimensions\t[ 0 0 0 1 0 ] ;"), kKelvin);
    EXPECT_EQ(ParseFoamDimensions("dimensions [];"), Dimensions{});
    EXPECT_EQ(ParseFoamDimensions("dimensions [0 1 -1];"), std::nullopt);
    EXPECT_EQ(ParseFoamDimensions("dimensions [0 0 0 0 0 0 0 0];"), std::nullopt);
}

TEST(FoamDimensions, OtherWordsTellNothing) {
    EXPECT_EQ(ParseFoamDimensions("dimensions [m s^-1];"), std::nullopt);
    EXPECT_EQ(ParseFoamDimensions("dimensions [0 1 -1 0 0 0 0"), std::nullopt);
    EXPECT_EQ(ParseFoamDimensions("dimensions"), std::nullopt);
    EXPECT_EQ(ParseFoamDimensions(""), std::nullopt);
}

TEST(FoamDimensions, CommentsAndLongerWordsArePassedOver) {
    EXPECT_EQ(ParseFoamDimensions("// dimensions [0 0 0 0 0];\n/* dimensions [1 1 1 1 1]; */\n"
                                  "mydimensions [2 2 2 2 2]; dimensions [0 1 -1 0 0];"),
              kVelocity);
    EXPECT_EQ(ParseFoamDimensions("/* dimensions [0 1 -1 0 0];"), std::nullopt);
}

TEST(FoamDimensions, AreThoseOfTheTimeOrOfARegionThere) {
    const ScratchFolder folder;
    const std::string file = folder.Write("case.foam", "");
    folder.Write("0/T", "dimensions [0 0 0 0 0 0 0];");
    folder.Write("0.50/T", "dimensions [0 0 0 1 0 0 0];");
    folder.Write("0.50/lid/U", "dimensions [0 1 -1 0 0 0 0];");
    EXPECT_EQ(ReadFoamDimensions(file, 0.5, "T"), kKelvin);
    EXPECT_EQ(ReadFoamDimensions(file, 0.5, "U"), kVelocity);
    EXPECT_EQ(ReadFoamDimensions(file, 0.0, "T"), Dimensions{});
    EXPECT_EQ(ReadFoamDimensions(file, 0.5, "p"), std::nullopt);
    EXPECT_EQ(ReadFoamDimensions(file, 1.0, "T"), std::nullopt);
}

TEST(FoamDimensions, OnlyTheBeginningOfAFileIsRead) {
    const ScratchFolder folder;
    const std::string file = folder.Write("case.foam", "");
    folder.Write("1/T", std::string(70000, ' ') + "dimensions [0 0 0 1 0 0 0];");
    EXPECT_EQ(ReadFoamDimensions(file, 1.0, "T"), std::nullopt);
}

}  // namespace
